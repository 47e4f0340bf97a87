#include "desktop/session/PortalAppearance.h"

#include <systemd/sd-bus.h>

#include <cstring>
#include <utility>

namespace quibbits::session {
namespace {

constexpr const char* area = "org.freedesktop.appearance";
constexpr const char* setting = "color-scheme";
constexpr std::uint32_t prefersDark = 1;

/// The number in a variant, which may lie in another variant.
std::optional<std::uint32_t> readScheme(sd_bus_message* message) {
    char type = 0;
    const char* contents = nullptr;
    if (sd_bus_message_peek_type(message, &type, &contents) <= 0 || type != 'v') return {};
    std::uint32_t scheme = 0;
    if (std::strcmp(contents, "v") == 0) {
        if (sd_bus_message_enter_container(message, 'v', "v") <= 0) return {};
        return readScheme(message);
    }
    if (sd_bus_message_read(message, "v", "u", &scheme) <= 0) return {};
    return scheme;
}

}  // namespace

PortalAppearance::PortalAppearance(Bus& session) : session_(session) {
    changes_ = session_.match(
        "type='signal',path='/org/freedesktop/portal/desktop'"
        ",interface='org.freedesktop.portal.Settings',member='SettingChanged'"
        ",arg0='org.freedesktop.appearance',arg1='color-scheme'",
        [this](sd_bus_message* signal) {
            const char* text = nullptr;
            if (sd_bus_message_read(signal, "ss", &text, &text) <= 0) return;
            if (const auto scheme = readScheme(signal)) found(*scheme == prefersDark);
        });
    returns_ = session_.connected.subscribe([this] { ask(); });
    ask();
}

void PortalAppearance::ask() {
    question_ = session_.call(
        {.destination = "org.freedesktop.portal.Desktop",
         .path = "/org/freedesktop/portal/desktop",
         .interface = "org.freedesktop.portal.Settings",
         .member = "Read"},
        [](sd_bus_message* call) { return sd_bus_message_append(call, "ss", area, setting); },
        [this](sd_bus_message* reply, const Bus::Failure&) {
            const auto scheme = reply ? readScheme(reply) : std::nullopt;
            found(scheme == prefersDark);
        });
}

void PortalAppearance::found(bool dark) {
    const bool isNews = !std::exchange(known_, true) || dark != dark_;
    dark_ = dark;
    if (isNews) changed.emit();
}

}  // namespace quibbits::session
