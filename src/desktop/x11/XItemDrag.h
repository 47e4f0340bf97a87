#pragma once
// An item that the user carries from one panel of this program to another with the button held. Its
// picture goes with the pointer; panels under it are asked and told as for any drop. Nothing is
// offered to other programs. It ends once: dropped, called off, or with the mouse taken away.

#include "desktop/x11/InputGrab.h"
#include "desktop/x11/XPointer.h"
#include "layers/LayerEngine.h"
#include "layers/Panel.h"
#include "platform/Lifetime.h"

namespace quibbits::x11 {

class XPanel;
class XPanels;

class XItemDrag final : private PointerOwner {
public:
    XItemDrag(XPanels& panels, ItemDrag drag);
    ~XItemDrag();

    /// Ends it as the user would by letting go over nothing.
    void cancel() { end(); }

    /// The drag is over; what it still has to run, by the owner. May destroy this.
    std::function<void(Job)> onOver;

private:
    void showPicture(const ItemDrag& drag);
    void listen();
    void pointerMoved() override;
    void move();
    void drop();
    XPanel* target() const;
    DragInfo infoFor(const XPanel& panel) const;
    void end();

    XPanels& panels_;
    Connection& connection_;
    XPointer& pointer_;
    ItemDrag drag_;
    std::unique_ptr<Panel> picture_;
    InputGrab grab_;
    Point at_;
    bool isOver_ = false;
    Timer watch_;
    std::vector<Subscription> subscriptions_;
    Lifetime lifetime_;
};

}  // namespace quibbits::x11
