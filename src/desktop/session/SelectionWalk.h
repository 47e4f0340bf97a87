#pragma once
// Reads what is selected in the file manager's active window from what it shows to assistive
// programs: the names of the selected items, and the folder from its path bar or its location
// field. Says nothing at all rather than half or a guess, since what it says may be thrown away.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "desktop/session/AccessibleWalk.h"
#include "platform/FileBrowser.h"

namespace quibbits::session {

class SelectionWalk final : public AccessibleWalk {
public:
    using ToPoints = std::function<Rect(Rect pixels)>;
    using Done = std::function<void(FileSelection)>;
    SelectionWalk(Bus& bus, ToPoints toPoints, Done done);

private:
    /// Something whose label stands for a file, or a part of it.
    struct Item {
        std::string name;
        std::optional<Rect> frame;  // pixels, y downwards
        bool selected = false;
    };
    /// Something that shows files, or other things in rows.
    struct View {
        Rect frame;
        bool isTable = false;
        bool isUnfolded = false;  // folders in it show what is in them
        std::map<std::vector<std::size_t>, Item> items;
    };
    /// A button of a path bar.
    struct Step {
        std::string name;
        bool isHere = false;
    };
    using Place = std::vector<std::size_t>;

    void visitWindow(const Object& window);
    void visit(const Object& object);
    void visitShown(const Object& object, Role role);
    void visitStep(const Object& object, AccessibleStates states);
    void visitView(const Object& object, Role role);
    void visitRow(View& view, const Object& object);
    void visitItem(View& view, const Object& object);
    void ended() override;

    const View* largestView() const;
    std::optional<std::string> folder() const;
    std::optional<std::string> folderOfBar() const;
    FileSelection selection() const;

    ToPoints toPoints_;
    Done done_;
    int windows_ = 0;  // that say they are active
    std::string title_;
    std::map<Place, View> views_;
    std::map<Place, std::map<std::size_t, Step>> bars_;  // by the place that holds the buttons
    std::vector<std::string> fields_;                    // what stands in text fields
};

}  // namespace quibbits::session
