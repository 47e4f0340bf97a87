#pragma once
// An open popup menu on X11: shows it, takes the mouse and the keys of the whole desktop for it,
// and is over when a line was chosen, the user pressed elsewhere or the server took the mouse back.
// While another program has the mouse, as a tray has right after a click, this asks again, and a
// press outside closes the menu all the same.

#include "desktop/x11/InputGrab.h"
#include "desktop/x11/XPointer.h"
#include "menus/PopupMenu.h"

namespace quibbits::x11 {

class XPanel;
class XPanels;

class XMenu final : private PointerOwner {
public:
    /// At a global point; a menu without lines is over at once.
    XMenu(XPanels& panels, Menu menu, Point at);
    ~XMenu();

    const PopupMenu& menu() const { return menu_; }
    bool holdsInput() const { return static_cast<bool>(grab_); }

    /// The menu is over; with what the chosen line runs, if one was. May destroy this.
    std::function<void(Job)> onEnd;

private:
    static PopupMenu::Place placeFor(XPanels& panels, Point at);
    XPanel& panel();
    void listen();
    void takeInput();
    void pointerMoved() override { menu_.pointerMoved(pointer_.location()); }
    void end(std::optional<std::size_t> line);

    XPanels& panels_;
    Connection& connection_;
    XPointer& pointer_;
    Menu lines_;
    PopupMenu menu_;
    InputGrab grab_;
    int refusals_ = 0;
    Timer askAgain_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace quibbits::x11
