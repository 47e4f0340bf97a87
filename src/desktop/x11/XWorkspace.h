#pragma once
// The applications of the desktop, as the window manager lists their windows.

#include <map>

#include "desktop/files/Browsers.h"
#include "desktop/x11/Connection.h"
#include "platform/Workspace.h"

namespace quibbits::x11 {

class XWorkspace final : public Workspace {
public:
    explicit XWorkspace(Connection& connection);

    std::optional<Application> frontmost() const override { return front_; }
    std::vector<Application> running() const override { return running_; }
    /// The title of the active window, when it belongs to a browser.
    std::optional<WebPage> page(const Application& application) const override;
    std::vector<InstalledApplication> installed() const override;
    void open(const std::string& address) override;

private:
    void rootChanged(xcb_atom_t property);
    void readFront();
    void readList();
    void learn(const std::vector<xcb_window_t>& windows);

    /// What is known of a window. The desktop itself can be in front, yet is no window that makes
    /// its application count as running.
    struct Known {
        std::optional<Application> application;  // none for docks
        bool isDesktop = false;
    };

    Connection& connection_;
    std::map<xcb_window_t, Known> windows_;  // those of the client list
    std::optional<Application> front_;
    std::vector<Application> running_;
    mutable Browsers browsers_;  // remembers whom it was asked about
    Subscription subscription_;
};

}  // namespace quibbits::x11
