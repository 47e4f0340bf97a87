#include "desktop/session/TrayIcon.h"

#include <systemd/sd-bus.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <utility>

#include "desktop/session/BusValues.h"

namespace quibbits::session {
namespace {

constexpr const char* itemPath = "/StatusNotifierItem";
constexpr const char* itemInterface = "org.kde.StatusNotifierItem";
constexpr const char* menuPath = "/MenuBar";
constexpr const char* noMenuPath = "/NO_DBUSMENU";
constexpr const char* watcher = "org.kde.StatusNotifierWatcher";
constexpr const char* watcherPath = "/StatusNotifierWatcher";

// A panel that starts together with the program, or anew, has this long to come.
constexpr Seconds patience = 3;
constexpr Seconds beforeToolTip = 0.6;  // that the pointer rests on the icon
// A click is where the pointer is, if that was touched so shortly before.
constexpr Seconds justTouched = 1;

struct FixedText {
    const char* property;
    const char* value;
};
/// What never changes. The empty ones say that there is a picture instead of a theme's icon.
constexpr std::array<FixedText, 9> fixedTexts{{{"Category", "ApplicationStatus"},
                                               {"Id", "quibbits"},
                                               {"Title", "Quibbits"},
                                               {"Status", "Active"},
                                               {"IconName", ""},
                                               {"IconThemePath", ""},
                                               {"OverlayIconName", ""},
                                               {"AttentionIconName", ""},
                                               {"AttentionMovieName", ""}}};

int appendPictures(sd_bus_message* reply, const std::vector<TrayPicture>& pictures) {
    sd_bus_message_open_container(reply, 'a', "(iiay)");
    for (const auto& picture : pictures) {
        sd_bus_message_open_container(reply, 'r', "iiay");
        sd_bus_message_append(reply, "ii", picture.side, picture.side);
        sd_bus_message_append_array(reply, 'y', picture.bytes.data(), picture.bytes.size());
        sd_bus_message_close_container(reply);
    }
    return sd_bus_message_close_container(reply);
}

}  // namespace

struct TrayIcon::Methods {
    static TrayIcon& self(void* data) { return *static_cast<TrayIcon*>(data); }

    static int clicked(sd_bus_message* call, void* data, Click click) {
        int x = 0;
        int y = 0;
        if (const int bad = sd_bus_message_read(call, "ii", &x, &y); bad < 0) return bad;
        self(data).clicked(click, x, y);
        return sd_bus_reply_method_return(call, "");
    }
    static int activate(sd_bus_message* call, void* data, sd_bus_error*) {
        return clicked(call, data, Click::primary);
    }
    static int contextMenu(sd_bus_message* call, void* data, sd_bus_error*) {
        return clicked(call, data, Click::context);
    }
    static int ignore(sd_bus_message* call, void*, sd_bus_error*) {
        return sd_bus_reply_method_return(call, "");
    }

    static int fixedText(sd_bus*, const char*, const char*, const char* property,
                         sd_bus_message* reply, void*, sd_bus_error*) {
        for (const auto& [name, value] : fixedTexts) {
            if (std::string_view(name) == property) return sd_bus_message_append(reply, "s", value);
        }
        return -ENOENT;
    }
    static int picture(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                       void* data, sd_bus_error*) {
        return appendPictures(reply, self(data).pictures_);
    }
    static int noPicture(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                         void*, sd_bus_error*) {
        return appendPictures(reply, {});
    }
    static int toolTip(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                       void* data, sd_bus_error*) {
        const std::string text = busText(self(data).toolTip_);
        sd_bus_message_open_container(reply, 'r', "sa(iiay)ss");
        sd_bus_message_append(reply, "s", "");
        appendPictures(reply, {});
        sd_bus_message_append(reply, "ss", text.c_str(), "");
        return sd_bus_message_close_container(reply);
    }
    static int itemIsMenu(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                          void*, sd_bus_error*) {
        return sd_bus_message_append(reply, "b", 0);
    }
    static int windowId(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                        void*, sd_bus_error*) {
        return sd_bus_message_append(reply, "i", 0);
    }
    static int menu(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                    void* data, sd_bus_error*) {
        return sd_bus_message_append(reply, "o", self(data).onMenu ? menuPath : noMenuPath);
    }

    static const sd_bus_vtable table[];
};

const sd_bus_vtable TrayIcon::Methods::table[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Activate", "ii", "", activate, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("SecondaryActivate", "ii", "", activate, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("ContextMenu", "ii", "", contextMenu, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Scroll", "is", "", ignore, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("ProvideXdgActivationToken", "s", "", ignore, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_PROPERTY("Category", "s", fixedText, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Id", "s", fixedText, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Title", "s", fixedText, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Status", "s", fixedText, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("WindowId", "i", windowId, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("IconName", "s", fixedText, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("IconThemePath", "s", fixedText, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("IconPixmap", "a(iiay)", picture, 0, 0),
    SD_BUS_PROPERTY("OverlayIconName", "s", fixedText, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("OverlayIconPixmap", "a(iiay)", noPicture, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("AttentionIconName", "s", fixedText, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("AttentionIconPixmap", "a(iiay)", noPicture, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("AttentionMovieName", "s", fixedText, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("ToolTip", "(sa(iiay)ss)", toolTip, 0, 0),
    SD_BUS_PROPERTY("ItemIsMenu", "b", itemIsMenu, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Menu", "o", menu, 0, 0),
    SD_BUS_SIGNAL("NewTitle", "", 0),
    SD_BUS_SIGNAL("NewIcon", "", 0),
    SD_BUS_SIGNAL("NewAttentionIcon", "", 0),
    SD_BUS_SIGNAL("NewOverlayIcon", "", 0),
    SD_BUS_SIGNAL("NewToolTip", "", 0),
    SD_BUS_SIGNAL("NewStatus", "s", 0),
    SD_BUS_VTABLE_END,
};

TrayIcon::TrayIcon(EventRunLoop& loop, Bus& session, Display display)
    : loop_(loop),
      bus_(session),
      display_(std::move(display)),
      name_("org.kde.StatusNotifierItem-" + std::to_string(getpid()) + "-1"),
      menu_(loop, session, menuPath, [this] { return onMenu ? onMenu() : Menu(); }) {
    if (OtherTray* other = display_.otherTray) {
        other->onClick = [this] { tellClick(Click::primary); };
        other->onRightClick = [this] { tellClick(Click::context); };
        other->onHover = [this](bool isOver) { hovered(isOver); };
    }
}

TrayIcon::~TrayIcon() {
    if (OtherTray* other = display_.otherTray) {
        other->onClick = other->onRightClick = nullptr;
        other->onHover = nullptr;
    }
}

void TrayIcon::show(Image image, std::string toolTip) {
    pictures_ = trayPictures(image);
    toolTip_ = std::move(toolTip);
    if (display_.otherTray) display_.otherTray->setImage(std::move(image));
    for (const char* news : {"NewIcon", "NewToolTip"}) {
        bus_.emit(itemPath, itemInterface, news, nullptr);
    }
    offer();
}

void TrayIcon::popUp(Menu menu) {
    const auto icon = frame();
    const auto screen = icon ? display_.screens.at(icon->center()) : std::nullopt;
    if (!screen || !display_.openMenu) return;
    const bool wasClicked = lastClick_ && icon->contains({lastClick_->x, icon->midY()});
    const double x = wasClicked ? lastClick_->x : icon->minX();
    const bool isAbove = icon->midY() > screen->frame.midY();
    const Rect& free = screen->visibleFrame;  // beside the panel that the icon is in
    display_.openMenu(std::move(menu), {x, isAbove ? std::min(icon->minY(), free.maxY())
                                                   : std::max(icon->maxY(), free.minY())});
}

std::optional<Rect> TrayIcon::frame() const {
    const auto screen = lastClick_ ? display_.screens.at(*lastClick_) : display_.screens.main();
    if (!screen) return std::nullopt;
    const auto exact = display_.otherTray ? display_.otherTray->frame() : std::nullopt;
    if (exact) return exact;
    if (!lastClick_ && !isShown()) return middleOfTheFloor(*screen);
    return lastClick_ ? trayPlaceAt(*screen, *lastClick_)
                      : usualTrayPlace(*screen, display_.dock.bottom());
}

// The tray.

void TrayIcon::offer() {
    if (std::exchange(isOffered_, true)) return;
    served_ = bus_.serve(
        {.path = itemPath, .interface = itemInterface, .table = Methods::table, .data = this});
    named_ = bus_.own(name_);
    owners_ = bus_.match(
        std::string(
            "type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',arg0='") +
            watcher + "'",
        [this](sd_bus_message* signal) { heardOwner(signal); });
    hosts_ = bus_.match(std::string("type='signal',sender='") + watcher + "',interface='" +
                            watcher + "',member='StatusNotifierHostRegistered'",
                        [this](sd_bus_message*) { hostIs(true); });
    returns_ = bus_.connected.subscribe([this] { join(); });
    ends_ = bus_.lost.subscribe([this] { hostIs(false); });
    join();
}

void TrayIcon::join() {
    question_ = bus_.call(
        {.destination = watcher,
         .path = watcherPath,
         .interface = watcher,
         .member = "RegisterStatusNotifierItem",
         .startsService = false},
        [this](sd_bus_message* call) { return sd_bus_message_append(call, "s", name_.c_str()); },
        [this](sd_bus_message* reply, const Bus::Failure&) {
            if (reply) {
                askForHost();
            } else {
                hostIs(false);
            }
        });
}

/// Whether anybody shows what is registered. A watcher that does not say so shows it itself.
void TrayIcon::askForHost() {
    question_ = bus_.call(
        {.destination = watcher,
         .path = watcherPath,
         .interface = "org.freedesktop.DBus.Properties",
         .member = "GetAll",
         .startsService = false},
        [](sd_bus_message* call) { return sd_bus_message_append(call, "s", watcher); },
        [this](sd_bus_message* reply, const Bus::Failure&) {
            const auto properties = reply ? readDictionary(reply) : BusDictionary();
            hostIs(valueOf<bool>(properties, "IsStatusNotifierHostRegistered").value_or(true));
        });
}

void TrayIcon::hostIs(bool present) {
    hasHost_ = present;
    OtherTray* const other = display_.otherTray;
    if (other) other->setWanted(!present);
    if (onPresence) onPresence();
    if (present) return patience_.cancel();
    if (hasTold_ || patience_) return;
    patience_ = loop_.timer(
        patience,
        [this] {
            patience_.cancel();
            if (display_.otherTray && display_.otherTray->isThere()) return;
            hasTold_ = true;
            if (onNoTray) onNoTray();
        },
        patience / 3);
}

void TrayIcon::heardOwner(sd_bus_message* signal) {
    readText(signal);  // the service
    readText(signal);  // its former owner
    const auto owner = readText(signal);
    if (owner && !owner->empty()) {
        join();
    } else {
        question_.reset();
        hostIs(false);
    }
}

// Clicks.

void TrayIcon::clicked(Click click, int x, int y) {
    const bool byMouse = display_.pointer.untouched() < justTouched;
    if (byMouse) {
        lastClick_ = display_.pointer.location();
    } else if ((x != 0 || y != 0) && display_.pointOf) {
        lastClick_ = display_.pointOf(x, y);
    }
    tellClick(click);
}

/// An older tray shows nothing itself.
void TrayIcon::hovered(bool isOver) {
    resting_.cancel();
    shownTip_.reset();
    if (!isOver || !display_.toolTip) return;
    resting_ = loop_.timer(beforeToolTip, [this] {
        resting_.cancel();
        if (const auto icon = frame()) shownTip_ = display_.toolTip(toolTip_, *icon);
    });
}

void TrayIcon::tellClick(Click click) {
    hovered(false);
    loop_.post(lifetime_.guard([this, click] {
        const auto listener = click == Click::primary ? onClick : onRightClick;
        if (listener) listener();
    }));
}

}  // namespace quibbits::session
