#pragma once
// The file manager: what it draws on the desktop, and what is selected in its front window.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/Accessibility.h"
#include "platform/Geometry.h"
#include "platform/Signal.h"

namespace quibbits {

struct DesktopIcon {
    std::string name;
    Rect frame;  // global coordinates
    bool operator==(const DesktopIcon&) const = default;
};

/// What is selected in the file manager's front window.
struct FileSelection {
    std::vector<std::string> paths;          // in the window's order
    std::optional<AccessibleWindow> window;  // nothing: the desktop lets nobody look
    bool isKnown = true;                     // whether somebody could tell what is selected
};

class FileBrowser {
public:
    virtual ~FileBrowser() = default;
    /// The icons that the desktop shows, in the file manager's order. An empty list is an empty
    /// desktop; nothing means that the desktop does not tell.
    virtual std::optional<std::vector<DesktopIcon>> desktopIcons() = 0;
    /// True while nothing is known yet and an answer is on its way; iconsRead tells of it.
    virtual bool isReading() const { return false; }
    /// Where the file manager itself says that an item of the desktop lies, by its file name.
    virtual std::optional<Point> desktopPosition(const std::string& name) {
        static_cast<void>(name);
        return std::nullopt;
    }
    /// Whether the id is that of a file manager's application.
    virtual bool isFileManager(const std::string& application) const = 0;
    /// Reads what is selected in the front window and tells it once, on the main queue, maybe
    /// later. Nothing selected, and a file manager that does not say what is, both are an empty
    /// list.
    virtual void readSelection(std::function<void(const FileSelection&)> done) = 0;

    /// A list that was still being read when it was asked for is there now.
    Signal<> iconsRead;
};

}  // namespace quibbits
