#include "desktop/session/SessionServices.h"

#include <systemd/sd-bus.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "desktop/session/BusValues.h"

namespace quibbits::session {
namespace {

constexpr const char* notificationService = "org.freedesktop.Notifications";
constexpr const char* grantedKey = "session.starts";  // by a portal

Bus::Call toDaemon(const char* member) {
    return {.destination = "org.freedesktop.DBus",
            .path = "/org/freedesktop/DBus",
            .interface = "org.freedesktop.DBus",
            .member = member};
}

}  // namespace

SessionServices::SessionServices(Bus& session, World world)
    : session_(session), world_(std::move(world)), autostart_(world_.autostart, world_.program) {
    owners_ = session_.match(
        std::string(
            "type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',arg0='") +
            notificationService + "'",
        [this](sd_bus_message*) { askForNotifications(); });
    returns_ = session_.connected.subscribe([this] { askForNotifications(); });
    ends_ = session_.lost.subscribe([this] {
        notifications_ = false;
        changed.emit();
    });
    // Whoever asks a portal hears of the user's answer by a signal of its own.
    answer_ =
        session_.match("type='signal',interface='org.freedesktop.portal.Request',member='Response'",
                       [this](sd_bus_message* signal) {
                           const auto refused = readNumber(signal);
                           const auto starts = valueOf<bool>(readDictionary(signal), "autostart");
                           if (refused != 0u || !starts) return;
                           world_.defaults.set(grantedKey, *starts);
                           changed.emit();
                       });
    askForNotifications();
}

/// One that runs, or that the bus would start with the first notification.
void SessionServices::askForNotifications() {
    const auto is = [this](bool there) {
        if (there == notifications_) return;
        notifications_ = there;
        changed.emit();
    };
    owned_ = session_.call(
        toDaemon("NameHasOwner"),
        [](sd_bus_message* call) { return sd_bus_message_append(call, "s", notificationService); },
        [this, is](sd_bus_message* reply, const Bus::Failure&) {
            int owned = 0;
            if (reply && sd_bus_message_read(reply, "b", &owned) > 0 && owned != 0) return is(true);
            startable_ = session_.call(
                toDaemon("ListActivatableNames"), nullptr,
                [is](sd_bus_message* names, const Bus::Failure&) {
                    const auto all = names ? readTexts(names) : std::vector<std::string>();
                    is(std::ranges::find(all, notificationService) != all.end());
                });
        });
}

std::optional<bool> SessionServices::has(SessionService service) const {
    switch (service) {
        case SessionService::tray: return world_.tray && world_.tray();
        case SessionService::accessibility: return world_.accessibility && world_.accessibility();
        case SessionService::notifications: break;
    }
    return notifications_;
}

std::optional<bool> SessionServices::startsProgram() const {
    return world_.inSandbox ? world_.defaults.boolean(grantedKey) : autostart_.isOn();
}

void SessionServices::setStartsProgram(bool starts) {
    if (world_.inSandbox) return askPortal(starts);
    autostart_.set(starts);
    changed.emit();
}

void SessionServices::askPortal(bool starts) {
    request_ = session_.call(
        {.destination = "org.freedesktop.portal.Desktop",
         .path = "/org/freedesktop/portal/desktop",
         .interface = "org.freedesktop.portal.Background",
         .member = "RequestBackground"},
        [starts](sd_bus_message* call) {
            return sd_bus_message_append(
                call, "sa{sv}", "", 3, "reason", "s", "Creatures that greet you when you log in",
                "autostart", "b", static_cast<int>(starts), "commandline", "as", 1, "quibbits");
        },
        [](sd_bus_message*, const Bus::Failure&) {});
}

bool SessionServices::isInSandbox() {
    return access("/.flatpak-info", F_OK) == 0 || std::getenv("SNAP") != nullptr;
}

std::filesystem::path SessionServices::ownProgram() {
    std::error_code error;
    const auto own = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::filesystem::path("quibbits") : own;
}

}  // namespace quibbits::session
