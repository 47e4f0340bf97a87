#pragma once
// The user's session as it is on this desktop: which services are there, and starting with it. In a
// sandbox the desktop's portal is asked to start the program; elsewhere a file says so.

#include <filesystem>
#include <functional>

#include "desktop/session/Autostart.h"
#include "desktop/session/Bus.h"
#include "platform/DesktopSession.h"
#include "platform/UserDefaults.h"

namespace quibbits::session {

class SessionServices final : public DesktopSession {
public:
    struct World {
        std::function<bool()> tray;           // whether some tray shows the icon
        std::function<bool()> accessibility;  // whether programs tell what they show
        UserDefaults& defaults;               // remembers what a portal has granted
        std::filesystem::path autostart;      // the user's autostart folder
        std::filesystem::path program;        // this one
        bool inSandbox = false;
    };
    SessionServices(Bus& session, World world);

    std::optional<bool> has(SessionService service) const override;
    std::optional<bool> startsProgram() const override;
    void setStartsProgram(bool starts) override;

    /// Whether this process runs in a sandbox whose files the desktop does not see.
    static bool isInSandbox();
    /// The file of this program, as somebody else would start it.
    static std::filesystem::path ownProgram();

private:
    void askForNotifications();
    void askPortal(bool starts);

    Bus& session_;
    World world_;
    Autostart autostart_;
    bool notifications_ = false;
    Subscription owned_;
    Subscription startable_;
    Subscription owners_;
    Subscription returns_;
    Subscription ends_;
    Subscription request_;
    Subscription answer_;
};

}  // namespace quibbits::session
