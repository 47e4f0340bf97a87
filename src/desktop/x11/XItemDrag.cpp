#include "desktop/x11/XItemDrag.h"

#include <utility>

#include "desktop/x11/XPanels.h"

namespace quibbits::x11 {
namespace {

// A release that never arrives as an event is noticed this late.
constexpr Seconds betweenLooks = 0.1;

}  // namespace

XItemDrag::XItemDrag(XPanels& panels, ItemDrag drag)
    : panels_(panels),
      connection_(panels.connection_),
      pointer_(panels.pointer_),
      drag_(std::move(drag)),
      grab_(connection_),
      at_(pointer_.location()) {
    showPicture(drag_);
    listen();
    pointer_.setPace(this, Pace::quick);
    pointer_.give(*this);
    watch_ = connection_.loop().every(betweenLooks, [this] {
        if (!pointer_.buttons().left) drop();
    });
    // Another program's grab would leave this blind: then there is no drag.
    if (!grab_.take(static_cast<XPanel&>(*picture_).window())) {
        connection_.loop().post(lifetime_.guard([this] { end(); }));
    }
}

XItemDrag::~XItemDrag() {
    pointer_.takeBack(*this);
    pointer_.setPace(this, Pace::calm);
}

void XItemDrag::showPicture(const ItemDrag& drag) {
    const Rect bounds{0, 0, drag.size.width, drag.size.height};
    picture_ =
        panels_.makePanel({.frame = bounds.offset({at_.x - bounds.midX(), at_.y - bounds.midY()}),
                           .level = PanelLevel::menu});
    picture_->root().addSublayer(
        panels_.layers().makeLayer({.bounds = bounds,
                                    .position = bounds.center(),
                                    .content = Picture{drag.image, Filter::nearest}}));
    picture_->orderFront();
}

void XItemDrag::listen() {
    const auto window = static_cast<XPanel&>(*picture_).window();
    const auto on = [this](int type, auto handler) {
        subscriptions_.push_back(connection_.listen(type, handler));
    };
    on(XCB_BUTTON_RELEASE, [=, this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_button_release_event_t&>(e);
        if (event.event == window && event.detail == XCB_BUTTON_INDEX_1) drop();
    });
    on(XCB_KEY_PRESS, [=, this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_key_press_event_t&>(e);
        if (event.event == window && keyOf(connection_, event) == Key::escape) end();
    });
    on(XCB_UNMAP_NOTIFY, [=, this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_unmap_notify_event_t&>(e);
        if (event.window == window) end();
    });
}

void XItemDrag::pointerMoved() {
    auto alive = lifetime_.guard([] { return true; });
    move();
    if (alive() && !pointer_.buttons().left) drop();
}

void XItemDrag::move() {
    const Point at = pointer_.location();
    if (at == at_ || isOver_) return;
    at_ = at;
    picture_->setFrame({at.x - drag_.size.width / 2, at.y - drag_.size.height / 2, drag_.size.width,
                        drag_.size.height});
    auto alive = lifetime_.guard([] { return true; });
    const auto onMove = drag_.onMove;
    if (onMove) onMove(at);
    if (!alive() || isOver_) return;
    if (XPanel* panel = target()) {
        const auto over = panel->onDragOver;
        if (over) over(infoFor(*panel));
    }
}

void XItemDrag::drop() {
    if (isOver_) return;
    auto alive = lifetime_.guard([] { return true; });
    move();
    if (!alive() || isOver_) return;
    isOver_ = true;
    grab_.release();
    if (XPanel* panel = target()) {
        const auto info = infoFor(*panel);
        const auto over = panel->onDragOver;
        const auto take = panel->onDrop;
        if (over && take && over(info)) take(info);
    }
    if (!alive()) return;
    isOver_ = false;
    end();
}

/// The highest of the panels under the pointer that take drops.
XPanel* XItemDrag::target() const {
    XPanel* found = nullptr;
    for (auto* panel : panels_.panels_) {
        if (!panel->acceptsDrops() || !panel->isVisible() || !panel->frame().contains(at_)) {
            continue;
        }
        if (!found || panel->level() >= found->level()) found = panel;
    }
    return found;
}

DragInfo XItemDrag::infoFor(const XPanel& panel) const {
    return {.location = at_ - Vector{panel.frame().x, panel.frame().y},
            .item = drag_.item,
            .files = {}};
}

void XItemDrag::end() {
    if (std::exchange(isOver_, true)) return;
    grab_.release();
    pointer_.takeBack(*this);
    picture_->orderOut();
    const auto tell = std::move(onOver);
    if (tell) tell(std::move(drag_.onEnd));
}

}  // namespace quibbits::x11
