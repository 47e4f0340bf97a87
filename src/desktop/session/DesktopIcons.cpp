#include "desktop/session/DesktopIcons.h"

#include <systemd/sd-bus.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "desktop/session/BusValues.h"

namespace quibbits::session {
namespace {

constexpr Seconds staleAfter = 20;
constexpr Seconds longestWalk = 5;
constexpr std::size_t mostObjects = 4000;
constexpr std::size_t deepest = 9;
constexpr double smallestIcon = 8;  // pixels

/// Roles of accessible objects that matter here, by their numbers on the bus.
enum class Role : std::uint32_t {
    canvas = 6,
    desktopIcon = 13,
    filler = 20,
    frame = 23,
    icon = 26,
    image = 27,
    layeredPane = 30,
    list = 31,
    listItem = 32,
    panel = 39,
    scrollPane = 49,
    tableCell = 56,
    unknown = 67,
    viewport = 68,
    window = 69,
};

bool holdsIcons(Role role) {
    static constexpr std::array roles{Role::filler,   Role::frame, Role::layeredPane,
                                      Role::list,     Role::panel, Role::scrollPane,
                                      Role::viewport, Role::window};
    return std::ranges::find(roles, role) != roles.end();
}

bool isIcon(Role role) {
    static constexpr std::array roles{Role::canvas,   Role::desktopIcon, Role::icon,   Role::image,
                                      Role::listItem, Role::tableCell,   Role::unknown};
    return std::ranges::find(roles, role) != roles.end();
}

/// File managers that draw a desktop or windows of files, by their accessible names, window
/// classes and application ids, in small letters.
bool isKnownFileManager(std::string_view name) {
    static constexpr std::array known{
        "caja",     "pcmanfm", "pcmanfm-qt",         "nemo",      "nemo-desktop",   "thunar",
        "nautilus", "dolphin", "org.gnome.nautilus", "xfdesktop", "org.kde.dolphin"};
    return std::ranges::find(known, name) != known.end();
}

}  // namespace

/// One reading of everything, from the list of applications down to the icons.
class DesktopIcons::Walk {
public:
    Walk(Bus& bus, const Display& display, std::function<void(std::vector<DesktopIcon>)> done)
        : bus_(bus), display_(display), screen_(display.screen()), done_(std::move(done)) {
        children({.service = "org.a11y.atspi.Registry", .path = "/org/a11y/atspi/accessible/root"},
                 [this](const Object& application) { visitApplication(application); });
    }

private:
    /// An accessible object, and its place in the tree, which is the order of the icons.
    struct Object {
        std::string service;
        std::string path;
        std::vector<std::size_t> place = {};
    };

    void visitApplication(const Object& application) {
        nameOf(application, [this, application](const std::string& name) {
            if (!isKnownFileManager(name)) return;
            children(application, [this](const Object& window) {
                extentsOf(window, [this, window](const Rect& frame) {
                    if (coversScreen(frame)) children(window, inside());
                });
            });
        });
    }

    bool coversScreen(const Rect& frame) const {
        return frame.width >= screen_.width - 1 && frame.height >= screen_.height - 1;
    }

    std::function<void(const Object&)> inside() {
        return [this](const Object& object) { visit(object); };
    }

    void visit(const Object& object) {
        if (object.place.size() > deepest) return;
        ask(object, accessible, "GetRole", {}, [this, object](sd_bus_message* reply) {
            const auto role = static_cast<Role>(readNumber(reply).value_or(0));
            if (holdsIcons(role)) return children(object, inside());
            if (!isIcon(role)) return;
            nameOf(object, [this, object](const std::string& name) {
                if (name.empty()) return;
                extentsOf(object, [this, object, name](const Rect& frame) {
                    if (frame.width < smallestIcon || frame.height < smallestIcon) return;
                    if (frame.width > screen_.width / 2 || frame.height > screen_.height / 2)
                        return;
                    found_[object.place] = {.name = name, .frame = display_.toPoints(frame)};
                });
            });
        });
    }

    // Questions.

    void children(const Object& parent, std::function<void(const Object&)> each) {
        ask(parent, accessible, "GetChildren", {}, [this, parent, each](sd_bus_message* reply) {
            if (sd_bus_message_enter_container(reply, 'a', "(so)") <= 0) return;
            const char* service = nullptr;
            const char* path = nullptr;
            Object child;
            child.place = parent.place;
            child.place.push_back(0);
            while (objects_ < mostObjects &&
                   sd_bus_message_read(reply, "(so)", &service, &path) > 0) {
                ++objects_;
                child.service = service;
                child.path = path;
                each(child);
                ++child.place.back();
            }
        });
    }

    void nameOf(const Object& object, std::function<void(const std::string&)> use) {
        ask(
            object, "org.freedesktop.DBus.Properties", "Get",
            [](sd_bus_message* call) {
                return sd_bus_message_append(call, "ss", accessible, "Name");
            },
            [use](sd_bus_message* reply) {
                const char* name = nullptr;
                if (sd_bus_message_read(reply, "v", "s", &name) > 0) use(name);
            });
    }

    void extentsOf(const Object& object, std::function<void(const Rect&)> use) {
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

    void ask(const Object& object, const char* interface, const char* member, const Bus::Fill& fill,
             std::function<void(sd_bus_message*)> use) {
        const std::uint64_t id = nextId_++;
        ++open_;
        calls_[id] = bus_.call(
            {.destination = object.service,
             .path = object.path,
             .interface = interface,
             .member = member,
             .startsService = false,
             .timeout = longestWalk},
            fill, [this, id, use = std::move(use)](sd_bus_message* reply, const Bus::Failure&) {
                if (reply) use(reply);
                answered(id);
            });
    }

    void answered(std::uint64_t id) {
        calls_.erase(id);
        if (--open_ > 0) return;
        std::vector<DesktopIcon> icons;
        for (auto& [place, icon] : found_) icons.push_back(std::move(icon));
        const auto done = std::move(done_);
        done(std::move(icons));  // this object may be gone now
    }

    static constexpr const char* accessible = "org.a11y.atspi.Accessible";

    Bus& bus_;
    const Display& display_;
    const Size screen_;
    std::function<void(std::vector<DesktopIcon>)> done_;
    std::map<std::vector<std::size_t>, DesktopIcon> found_;
    std::map<std::uint64_t, Subscription> calls_;
    std::uint64_t nextId_ = 0;
    std::size_t open_ = 0;
    std::size_t objects_ = 0;
};

DesktopIcons::DesktopIcons(EventRunLoop& loop, Bus& session, Display display)
    : loop_(loop),
      session_(session),
      display_(std::move(display)),
      lastRead_(loop.now() - 2 * staleAfter) {}

DesktopIcons::~DesktopIcons() = default;

std::optional<std::vector<DesktopIcon>> DesktopIcons::desktopIcons() {
    if (!walk_ && loop_.now() - lastRead_ > staleAfter - 1) {
        lastRead_ = loop_.now();
        if (bus_)
            walk();
        else
            findBus();
    }
    return icons_;
}

bool DesktopIcons::isFileManager(const std::string& application) const {
    return isKnownFileManager(application);
}

void DesktopIcons::findBus() {
    question_ =
        session_.call({.destination = "org.a11y.Bus",
                       .path = "/org/a11y/bus",
                       .interface = "org.a11y.Bus",
                       .member = "GetAddress"},
                      {}, [this](sd_bus_message* reply, const Bus::Failure&) {
                          const auto address = reply ? readText(reply) : std::nullopt;
                          if (!address || address->empty()) return finish({});
                          bus_ = std::make_unique<Bus>(
                              loop_, Bus::Place{.kind = Bus::Kind::session, .address = *address});
                          loss_ = bus_->lost.subscribe([this] {
                              // Its next start has another address.
                              loop_.post(lifetime_.guard([this] {
                                  walk_.reset();
                                  loss_.reset();
                                  bus_.reset();
                              }));
                          });
                          walk();
                      });
}

void DesktopIcons::walk() {
    walk_ = std::make_unique<Walk>(*bus_, display_, [this](std::vector<DesktopIcon> icons) {
        // The walk is still at work here.
        loop_.post(lifetime_.guard([this, icons = std::move(icons)] { finish(icons); }));
    });
    deadline_ = loop_.timer(longestWalk, [this] {
        walk_.reset();  // what was read before stays
        if (!icons_) finish({});
    });
}

void DesktopIcons::finish(std::vector<DesktopIcon> icons) {
    walk_.reset();
    deadline_.cancel();
    if (icons_ == icons) return;
    icons_ = std::move(icons);
    iconsRead.emit();
}

}  // namespace quibbits::session
