#pragma once
// The applications of the desktop.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Signal.h"

namespace quibbits {

struct Application {
    std::string id;  // a stable name in lower case: the desktop file's, else the window class
    std::int64_t process = 0;
    bool isSelf = false;
    std::string windowClass = {};  // in lower case; what else it may be called
    bool operator==(const Application&) const = default;

    bool isCalled(std::string_view name) const { return id == name || windowClass == name; }
};

/// An application that is installed, running or not.
struct InstalledApplication {
    std::string id;  // its windows' application is called so
    std::string name;
    std::string icon;  // of the desktop's icon theme, or a path
    bool browsesWeb = false;
    bool operator==(const InstalledApplication&) const = default;
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
    /// Applications that the user could start, by name.
    virtual std::vector<InstalledApplication> installed() const = 0;
    /// Opens an address or a path with whatever the desktop has for it. What nobody can open is
    /// nothing.
    virtual void open(const std::string& address) = 0;

    Signal<> activated;     // another application came to the front
    Signal<> launched;      // an application started
    Signal<> terminated;    // an application ended
    Signal<> spaceChanged;  // another workspace is shown
};

}  // namespace quibbits
