#include "desktop/session/AccessibilityStatus.h"

#include <systemd/sd-bus.h>

namespace quibbits::session {
namespace {

constexpr const char* status = "org.a11y.Status";
constexpr const char* isEnabled = "IsEnabled";

Bus::Call property(const char* member) {
    return {.destination = "org.a11y.Bus",
            .path = "/org/a11y/bus",
            .interface = "org.freedesktop.DBus.Properties",
            .member = member};
}

}  // namespace

AccessibilityStatus::AccessibilityStatus(Bus& session) : session_(session) {
    changes_ = session_.match(
        "type='signal',path='/org/a11y/bus',interface='org.freedesktop.DBus.Properties'"
        ",member='PropertiesChanged',arg0='org.a11y.Status'",
        [this](sd_bus_message*) { ask(); });
    returns_ = session_.connected.subscribe([this] { ask(); });
    ask();
}

void AccessibilityStatus::ask() {
    question_ = session_.call(
        property("Get"),
        [](sd_bus_message* call) { return sd_bus_message_append(call, "ss", status, isEnabled); },
        [this](sd_bus_message* reply, const Bus::Failure&) {
            int enabled = 0;
            enabled_ = reply && sd_bus_message_read(reply, "v", "b", &enabled) > 0 && enabled != 0;
            if (onChange) onChange();
        });
}

void AccessibilityStatus::askForTrust() {
    request_ = session_.call(
        property("Set"),
        [](sd_bus_message* call) {
            return sd_bus_message_append(call, "ssv", status, isEnabled, "b", 1);
        },
        [this](sd_bus_message*, const Bus::Failure&) { ask(); });
}

}  // namespace quibbits::session
