#include "desktop/session/AccessibleWalk.h"

#include <systemd/sd-bus.h>

#include <algorithm>
#include <array>
#include <utility>

#include "desktop/session/BusValues.h"
#include "platform/Text.h"

namespace quibbits::session {
namespace {

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* selection = "org.a11y.atspi.Selection";
constexpr int mostSelected = 4000;

}  // namespace

bool isKnownFileManager(std::string_view name) {
    static constexpr std::array known{
        "caja",     "org.mate.caja", "pcmanfm",         "pcmanfm-qt",     "nemo",
        "org.nemo", "nemo-desktop",  "thunar",          "nautilus",       "org.gnome.nautilus",
        "dolphin",  "xfdesktop",     "org.xfce.thunar", "org.kde.dolphin"};
    return std::ranges::find(known, asciiLowercase(name)) != known.end();
}

AccessibleWalk::AccessibleWalk(Bus& bus, std::size_t mostObjects)
    : bus_(bus), mostObjects_(mostObjects) {}

AccessibleWalk::~AccessibleWalk() = default;

void AccessibleWalk::fileManagers(const EachObject& each) {
    const Object all{.service = "org.a11y.atspi.Registry",
                     .path = "/org/a11y/atspi/accessible/root"};
    children(all, [this, each](const Object& application) {
        nameOf(application, [each, application](const std::string& name) {
            if (isKnownFileManager(name)) each(application);
        });
    });
}

void AccessibleWalk::children(const Object& parent, EachObject each) {
    ask(parent, accessible, "GetChildren", {}, [this, parent, each](sd_bus_message* reply) {
        if (sd_bus_message_enter_container(reply, 'a', "(so)") <= 0) return;
        const char* service = nullptr;
        const char* path = nullptr;
        Object child;
        child.place = parent.place;
        child.place.push_back(0);
        while (sd_bus_message_read(reply, "(so)", &service, &path) > 0) {
            if (objects_ >= mostObjects_) {
                cut_ = true;
                return;
            }
            ++objects_;
            child.service = service;
            child.path = path;
            each(child);
            ++child.place.back();
        }
    });
}

void AccessibleWalk::selectedChildren(const Object& parent, std::function<void(int)> told,
                                      EachObject each) {
    property(parent, selection, "NSelectedChildren",
             [this, parent, told, each](sd_bus_message* reply) {
                 std::int32_t count = 0;
                 if (sd_bus_message_read(reply, "v", "i", &count) <= 0) count = 0;
                 if (count > mostSelected) cut_ = true;
                 count = std::clamp(count, 0, mostSelected);
                 told(count);
                 for (std::int32_t i = 0; i < count; ++i) {
                     ask(
                         parent, selection, "GetSelectedChild",
                         [i](sd_bus_message* call) { return sd_bus_message_append(call, "i", i); },
                         [parent, each, i](sd_bus_message* answer) {
                             const char* service = nullptr;
                             const char* path = nullptr;
                             if (sd_bus_message_read(answer, "(so)", &service, &path) <= 0) return;
                             Object child{.service = service, .path = path, .place = parent.place};
                             child.place.push_back(static_cast<std::size_t>(i));
                             each(child);
                         });
                 }
             });
}

void AccessibleWalk::roleOf(const Object& object, std::function<void(Role)> use) {
    ask(object, accessible, "GetRole", {},
        [use](sd_bus_message* reply) { use(static_cast<Role>(readNumber(reply).value_or(0))); });
}

void AccessibleWalk::statesOf(const Object& object, std::function<void(AccessibleStates)> use) {
    ask(object, accessible, "GetState", {}, [use](sd_bus_message* reply) {
        if (sd_bus_message_enter_container(reply, 'a', "u") <= 0) return;
        const std::uint64_t low = readNumber(reply).value_or(0);
        const std::uint64_t high = readNumber(reply).value_or(0);
        use(AccessibleStates(low | high << 32));
    });
}

void AccessibleWalk::nameOf(const Object& object, std::function<void(const std::string&)> use) {
    property(object, accessible, "Name", [use](sd_bus_message* reply) {
        const char* name = nullptr;
        if (sd_bus_message_read(reply, "v", "s", &name) > 0) use(name);
    });
}

void AccessibleWalk::textOf(const Object& object, std::function<void(const std::string&)> use) {
    ask(
        object, "org.a11y.atspi.Text", "GetText",
        [](sd_bus_message* call) { return sd_bus_message_append(call, "ii", 0, -1); },
        [use](sd_bus_message* reply) {
            if (const auto text = readText(reply)) use(*text);
        });
}

void AccessibleWalk::extentsOf(const Object& object, std::function<void(const Rect&)> use) {
    constexpr std::uint32_t onScreen = 0;
    ask(
        object, "org.a11y.atspi.Component", "GetExtents",
        [](sd_bus_message* call) { return sd_bus_message_append(call, "u", onScreen); },
        [use](sd_bus_message* reply) {
            std::int32_t x = 0, y = 0, width = 0, height = 0;
            if (sd_bus_message_read(reply, "(iiii)", &x, &y, &width, &height) <= 0) return;
            use({double(x), double(y), double(width), double(height)});
        });
}

void AccessibleWalk::property(const Object& object, const char* interface, const char* name,
                              std::function<void(sd_bus_message*)> use) {
    ask(
        object, "org.freedesktop.DBus.Properties", "Get",
        [interface, name](sd_bus_message* call) {
            return sd_bus_message_append(call, "ss", interface, name);
        },
        std::move(use));
}

/// What every object answers. Interfaces such as Component are not everybody's.
bool AccessibleWalk::isNeeded(std::string_view member) {
    return member == "GetChildren" || member == "GetState" || member == "GetSelectedChild";
}

void AccessibleWalk::ask(const Object& object, const char* interface, const char* member,
                         const Bus::Fill& fill, std::function<void(sd_bus_message*)> use) {
    const std::uint64_t id = nextId_++;
    ++open_;
    calls_[id] = bus_.call({.destination = object.service,
                            .path = object.path,
                            .interface = interface,
                            .member = member,
                            .startsService = false,
                            .timeout = longest},
                           fill,
                           [this, id, needed = isNeeded(member), use = std::move(use)](
                               sd_bus_message* reply, const Bus::Failure&) {
                               missed_ |= needed && !reply;
                               if (reply) use(reply);
                               answered(id);
                           });
}

void AccessibleWalk::answered(std::uint64_t id) {
    calls_.erase(id);
    if (--open_ == 0) ended();  // this object may be gone now
}

}  // namespace quibbits::session
