#pragma once
// The applications of the desktop.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/Signal.h"

namespace quibbits {

struct Application {
    std::string id;  // a stable name: the desktop file's, else the window class
    std::int64_t process = 0;
    bool isSelf = false;
    bool operator==(const Application&) const = default;
};

/// What a browser shows in its front window, as far as anybody tells.
struct WebPage {
    std::optional<std::string> address;
    std::string title;  // of the window
};

class Workspace {
public:
    virtual ~Workspace() = default;
    virtual std::optional<Application> frontmost() const = 0;
    /// Applications with ordinary windows.
    virtual std::vector<Application> running() const = 0;
    /// The page in the front window of an application; nothing when it is no known browser.
    virtual std::optional<WebPage> page(const Application& application) const = 0;

    Signal<> activated;     // another application came to the front
    Signal<> launched;      // an application started
    Signal<> terminated;    // an application ended
    Signal<> spaceChanged;  // another workspace is shown
};

}  // namespace quibbits
