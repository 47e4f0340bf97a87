#pragma once
// What the program's own widgets are to a screen reader. The toolkit knows its own; ours say
// themselves what they are.

#include <QAccessible>
#include <QString>
#include <optional>

namespace quibbits::window {

/// Beside QWidget, for a widget that the toolkit does not know. Its name is the widget's accessible
/// name.
class Spoken {
public:
    virtual ~Spoken() = default;
    virtual QAccessible::Role spokenRole() const = 0;
    /// From 0 to 100, for what is full to some degree.
    virtual std::optional<int> spokenPercentage() const { return std::nullopt; }
    virtual bool isSpokenChecked() const { return false; }
    virtual bool isSpokenSelected() const { return false; }
    /// Whether what belongs to it is open, for what opens and closes.
    virtual std::optional<bool> isSpokenOpen() const { return std::nullopt; }
    /// As a press of its key; does nothing where nothing can be pressed.
    virtual void pressBySpeech() {}
};

/// Called once, before the first window.
void tellAssistivePrograms();

}  // namespace quibbits::window
