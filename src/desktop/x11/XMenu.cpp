#include "desktop/x11/XMenu.h"

#include "desktop/words/DesktopWords.h"
#include "desktop/x11/XPanels.h"

namespace quibbits::x11 {
namespace {

constexpr Seconds betweenRequests = 0.03;
constexpr int mostRefusals = 30;

std::optional<MenuKey> menuKeyOf(Key key) {
    switch (key) {
        case Key::up: return MenuKey::up;
        case Key::down: return MenuKey::down;
        case Key::home: return MenuKey::first;
        case Key::end: return MenuKey::last;
        case Key::enter: return MenuKey::choose;
        case Key::escape: return MenuKey::cancel;
        case Key::other: break;
    }
    return std::nullopt;
}

}  // namespace

XMenu::XMenu(XPanels& panels, Menu menu, Point at)
    : panels_(panels),
      connection_(panels.connection_),
      pointer_(panels.pointer_),
      lines_(words::worded(std::move(menu))),
      menu_(panels, panels.ruler_, lines_, placeFor(panels, at)),
      grab_(connection_) {
    menu_.onEnd = [this](auto line) { end(line); };
    panel().onMouseMoved = panel().onMouseDragged = [this] { pointerMoved(); };
    listen();
    panel().orderFront();
    pointer_.setPace(this, Pace::quick);
    takeInput();
}

XMenu::~XMenu() {
    pointer_.takeBack(*this);
    pointer_.setPace(this, Pace::calm);
}

PopupMenu::Place XMenu::placeFor(XPanels& panels, Point at) {
    const auto screen = panels.screens_.at(at);
    return {.corner = at,
            .bounds = screen ? screen->frame : Rect{at.x, at.y, 0, 0},
            .pointer = panels.pointer_.location()};
}

XPanel& XMenu::panel() {
    return static_cast<XPanel&>(menu_.panel());
}

void XMenu::listen() {
    const auto window = panel().window();
    const auto on = [this](int type, auto handler) {
        subscriptions_.push_back(connection_.listen(type, handler));
    };
    const auto isMouse = [](std::uint8_t button) { return button <= XCB_BUTTON_INDEX_3; };
    on(XCB_BUTTON_PRESS, [=, this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_button_press_event_t&>(e);
        if (event.event == window && isMouse(event.detail)) menu_.pressed(pointer_.location());
    });
    on(XCB_BUTTON_RELEASE, [=, this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_button_press_event_t&>(e);
        if (event.event == window && isMouse(event.detail)) menu_.released(pointer_.location());
    });
    on(XCB_KEY_PRESS, [=, this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_key_press_event_t&>(e);
        if (event.event != window) return;
        if (const auto shortcut = shortcutOf(connection_, event)) return menu_.typed(*shortcut);
        if (const auto key = menuKeyOf(keyOf(connection_, event))) menu_.key(*key);
    });
    on(XCB_UNMAP_NOTIFY, [=, this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_unmap_notify_event_t&>(e);
        if (event.window == window) menu_.key(MenuKey::cancel);
    });
    subscriptions_.push_back(pointer_.elsewhere.subscribe([this](PointerEvent event) {
        if (event == PointerEvent::leftDown || event == PointerEvent::rightDown) {
            menu_.key(MenuKey::cancel);
        }
    }));
}

void XMenu::takeInput() {
    if (grab_.take(panel().window())) {
        pointer_.give(*this);
    } else if (++refusals_ < mostRefusals) {
        askAgain_ = connection_.loop().timer(betweenRequests, [this] { takeInput(); });
    }
}

void XMenu::end(std::optional<std::size_t> line) {
    grab_.release();
    panel().orderOut();
    Job chosen = line ? lines_.items[*line].run : Job();
    const auto tell = std::move(onEnd);
    if (tell) tell(std::move(chosen));
}

}  // namespace quibbits::x11
