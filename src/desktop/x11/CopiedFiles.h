#pragma once
// The files that are selected in the window in front, asked for as a user would: by its own copy
// command. Every file manager knows Control-C, though few tell assistive programs what is selected.
// Whatever the clipboard held before is there again afterwards.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "desktop/x11/Clipboard.h"
#include "desktop/x11/Connection.h"

namespace quibbits::x11 {

class CopiedFiles {
public:
    explicit CopiedFiles(Connection& connection);

    using Files = std::optional<std::vector<std::string>>;
    using Done = std::function<void(const Files&)>;
    /// Presses the keys, which only in a file manager's window mean to copy, when the user holds
    /// none any more. Nothing where the keys were not pressed: another window has come to the front
    /// meanwhile, or the clipboard holds more than could be put back. One reading at a time.
    void read(Done done);

private:
    void waitForHands();
    void press();
    void copied();
    void end(const Files& files);
    bool isAnyKeyDown() const;
    std::optional<std::uint32_t> windowInFront() const;
    xcb_keycode_t codeOf(std::uint32_t symbol) const;

    Connection& connection_;
    Clipboard clipboard_;
    Done done_;
    std::optional<std::uint32_t> window_;
    Instant givenUp_ = 0;
    Clipboard::Contents before_;
    Subscription taken_;
    Timer next_;
};

}  // namespace quibbits::x11
