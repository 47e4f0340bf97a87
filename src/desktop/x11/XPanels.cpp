#include "desktop/x11/XPanels.h"

#include <xcb/xfixes.h>

#include "desktop/x11/WindowManager.h"

namespace quibbits::x11 {
XPanels::XPanels(Connection& connection, XScreens& screens, XPointer& pointer, LayerEngine& engine)
    : connection_(connection),
      screens_(screens),
      pointer_(pointer),
      engine_(engine),
      visual_(connection) {
    const auto compositor = connection.atom(Atom::compositor);
    if (connection.xfixes) {
        xcb_xfixes_select_selection_input(
            connection.xcb(), connection.root(), compositor,
            XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
        subscriptions_.push_back(connection.listen(
            connection.xfixes->firstEvent + XCB_XFIXES_SELECTION_NOTIFY, [=, this](const auto& e) {
                const auto& change =
                    reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(e);
                if (change.selection == compositor) findCompositor();
            }));
    }
    findCompositor();
    findWindowManager();
    subscriptions_.push_back(
        screens.changed.subscribe([this] { tellAll(&XPanel::screensChanged); }));
    subscriptions_.push_back(connection.rootPropertyChanged.subscribe([this](xcb_atom_t name) {
        if (name == connection_.atom(Atom::supportingWmCheck)) {
            findWindowManager();
            tellAll(&XPanel::windowManagerChanged);
        } else if (name == connection_.atom(Atom::clientList) ||
                   name == connection_.atom(Atom::clientListStacking)) {
            tellAll(&XPanel::otherWindowsChanged);
        }
    }));
}

std::unique_ptr<Panel> XPanels::makePanel(Spec spec) {
    return std::make_unique<XPanel>(*this, spec);
}

void XPanels::openMenu(Menu menu, Point at, const XPanel* owner) {
    menu_.reset();
    if (menu.items.empty()) return;
    menuOwner_ = owner;
    menu_ = std::make_unique<XMenu>(*this, std::move(menu), at);
    menu_->onEnd = [this](Job chosen) {
        menu_.reset();
        if (chosen) connection_.loop().post(std::move(chosen));
    };
}

void XPanels::beginItemDrag(ItemDrag drag, const XPanel& from) {
    if (drag_) drag_->cancel();
    dragSource_ = &from;
    drag_ = std::make_unique<XItemDrag>(*this, std::move(drag));
    drag_->onOver = [this](Job end) {
        drag_.reset();
        if (end) connection_.loop().post(std::move(end));
    };
}

/// A panel ends, and with it the menu that it opened and what is carried out of it.
void XPanels::forget(XPanel& panel) {
    std::erase(panels_, &panel);
    if (menu_ && menuOwner_ == &panel) menu_.reset();
    if (drag_ && dragSource_ == &panel) drag_->cancel();
}

void XPanels::findCompositor() {
    auto* xcb = connection_.xcb();
    const auto owner = reply(xcb, xcb_get_selection_owner_reply,
                             xcb_get_selection_owner(xcb, connection_.atom(Atom::compositor)));
    const bool present = owner && owner->owner != XCB_NONE;
    if (present == hasCompositor_) return;
    hasCompositor_ = present;
    tellAll(&XPanel::compositorChanged);
}

void XPanels::findWindowManager() {
    managed_ = isI3(connection_) ? PanelWindow::Managed::no : PanelWindow::Managed::yes;
}

void XPanels::tellAll(void (XPanel::*message)()) {
    for (auto* panel : std::vector(panels_)) (panel->*message)();
}

}  // namespace quibbits::x11
