#pragma once
// The icons on the desktop and what is selected in a window, as the file manager that draws them
// tells assistive programs. Reading
// is a walk through its accessible objects, hundreds of small questions over the accessibility bus;
// all of them are asynchronous, so no frame ever waits for an answer. A file manager that tells
// nothing has no icons.

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktop/session/Bus.h"
#include "platform/FileBrowser.h"

namespace quibbits::session {

class SelectionWalk;

class DesktopIcons final : public FileBrowser {
public:
    /// What the display server knows.
    struct Display {
        /// The size of the main screen in pixels.
        std::function<Size()> screen;
        /// A rectangle of the display, in pixels with y downwards, in global points.
        std::function<Rect(Rect pixels)> toPoints;
        /// Finds out which files are selected in the window in front where it does not tell
        /// assistive programs, or that this cannot be found out. May be missing.
        using Files = std::optional<std::vector<std::string>>;
        std::function<void(std::function<void(const Files&)>)> copied = {};
    };
    DesktopIcons(EventRunLoop& loop, Bus& session, Display display);
    ~DesktopIcons();

    /// The icons as last read; at most every 20 seconds this reads them anew meanwhile, and tells
    /// iconsRead when that has changed them.
    std::optional<std::vector<DesktopIcon>> desktopIcons() override;
    /// The first walk has not ended yet.
    bool isReading() const override { return !icons_; }
    bool isFileManager(const std::string& application) const override;
    void readSelection(std::function<void(const FileSelection&)> done) override;

private:
    class Walk;
    /// Runs the job when the accessibility bus has been looked for; it may not have been found.
    void withBus(Job job);
    void openBus(const std::string& address);
    void walk();
    void finish(std::vector<DesktopIcon> icons);
    void walkSelection();
    void copySelection(FileSelection seen);
    void tellSelection(FileSelection selection);

    EventRunLoop& loop_;
    Bus& session_;
    Display display_;
    std::optional<std::vector<DesktopIcon>> icons_;
    Instant lastRead_;
    Subscription question_;
    std::unique_ptr<Bus> bus_;  // of accessibility; none until its address is known
    Subscription loss_;
    std::vector<Job> whenFound_;
    std::unique_ptr<Walk> walk_;
    Timer deadline_;
    std::vector<std::function<void(const FileSelection&)>> selectionAsked_;
    std::unique_ptr<SelectionWalk> selectionWalk_;
    Timer selectionDeadline_;
    Timer selectionRetry_;
    Instant selectionGivenUp_ = 0;
    std::uint64_t selectionNumber_ = 0;  // of the reading that counts
    Lifetime lifetime_;
};

}  // namespace quibbits::session
