#include "dial/PartyDial.h"

#include <algorithm>
#include <utility>

#include "body/Pixels.h"

namespace quibbits {

namespace {

constexpr double belowIcon = 4;  // points between the icon and the dial
constexpr Seconds hoverInterval = 1.0 / 30;
constexpr int iconScale = 3;
constexpr double roomForRoundEnds = 14;  // points above the view

/// Whether the icon is in a panel along the left or the right edge.
bool isBeside(Rect icon, const Screen& screen) {
    const Rect& free = screen.visibleFrame;
    return icon.midX() < free.minX() || icon.midX() > free.maxX();
}

/// Whether the icon is in a panel along the upper edge, which may be higher than the icon.
bool isInBarAtTop(Rect icon, const Screen& screen) {
    return !isBeside(icon, screen) && icon.minY() >= screen.visibleFrame.maxY();
}

}  // namespace

PartyDial::PartyDial(const Computer& computer, Panels& panels, std::vector<PartyMember> party)
    : computer_(computer), panels_(panels), party_(std::move(party)) {
    StatusItem& item = computer_.statusItem;
    item.show(Pixels::scaled(Pixels::homeball(), iconScale), "Quibbits");
    item.onClick = lifetime_.guard([this] { clicked(); });
    item.onRightClick = lifetime_.guard([this] { showMenu(); });
    item.onMenu = lifetime_.guard([this] { return menu(); });
}

PartyDial::~PartyDial() = default;

void PartyDial::clicked() {
    if (isOpen())
        close();
    else
        open();
}

void PartyDial::showMenu() {
    close();
    computer_.statusItem.popUp(menu());
}

Menu PartyDial::menu() const {
    Menu menu;
    // Without a settings window the line is there, but cannot be chosen.
    menu.items.push_back({.title = "Settings…", .key = ','});
    if (onSettings) menu.items.back().run = lifetime_.guard([this] { onSettings(); });
    menu.items.push_back({});
    menu.items.push_back({.title = "Quit Quibbits",
                          .run = lifetime_.guard([this] {
                              if (onQuit) onQuit();
                          }),
                          .key = 'q'});
    return menu;
}

std::optional<Point> PartyDial::anchor() const {
    const auto icon = computer_.statusItem.frame();
    if (!icon) return std::nullopt;
    return Point{icon->midX(), icon->minY()};
}

Rect PartyDial::viewFrame(Rect icon, const std::optional<Screen>& screen) {
    const Size size = DialShape::size;
    Rect frame{icon.midX() - size.width / 2, icon.minY() - size.height - belowIcon, size.width,
               size.height};
    if (!screen) return frame;
    const Rect all = screen->frame;
    const Rect free = screen->visibleFrame;
    const bool atBottom = icon.midY() < all.midY();
    if (atBottom && frame.minY() < all.minY()) {
        frame.y = std::max(icon.maxY(), free.minY()) + belowIcon;
    }
    if (isInBarAtTop(icon, *screen)) {
        frame.y = std::min(frame.y, free.maxY() - size.height);  // the bar covers no end of an arm
    }
    const auto clear = [](double low, double high, double length) {
        return Range{low, std::max(low, high - length)};
    };
    const double left = free.minX() > all.minX() ? free.minX() + belowIcon : all.minX();
    const double right = free.maxX() < all.maxX() ? free.maxX() - belowIcon : all.maxX();
    frame.x = clear(left, right, size.width).clamp(frame.x);
    if (isBeside(icon, *screen)) {
        const double low = free.minY() + belowIcon;
        frame.y = clear(low, free.maxY() - roomForRoundEnds, size.height).clamp(frame.y);
    }
    frame.y = Range{all.minY(), all.maxY() - size.height}.clamp(frame.y);
    return frame;
}

DialShape::Ends PartyDial::ends(const Rect& view, Rect icon, const std::optional<Screen>& screen) {
    if (!screen) return DialShape::Ends::cut;
    if (isBeside(icon, *screen)) return DialShape::Ends::round;
    const double upperEdge = screen->frame.maxY();
    const bool isHighUp = upperEdge - icon.maxY() < icon.height;
    const bool isAtEdge = upperEdge - view.maxY() <= belowIcon;
    return isHighUp || isAtEdge || isInBarAtTop(icon, *screen) ? DialShape::Ends::cut
                                                               : DialShape::Ends::round;
}

void PartyDial::open() {
    const auto icon = computer_.statusItem.frame();
    if (!icon || isOpen()) return;
    const auto screen = computer_.screens.at(icon->center());
    const Rect frame = viewFrame(*icon, screen);
    const DialShape::Ends ends = PartyDial::ends(frame, *icon, screen);
    auto dial = std::make_unique<Opened>();
    dial->panel =
        panels_.makePanel({.frame = frame.inset(-shadowMargin), .level = PanelLevel::menu});
    dial->view = std::make_unique<DialView>(panels_.layers(), computer_.text, party_, ends);
    {
        const Transaction still(panels_.layers(), Transaction::withoutActions());
        const LayerRef& layer = dial->view->layer();
        layer->setFrame({shadowMargin, shadowMargin, frame.width, frame.height});
        dial->panel->root().addSublayer(layer);
    }
    dial->view->onPick = [this, at = *anchor()](int index) { pick(index, at); };
    dial->view->onDrag = lifetime_.guard([this](std::optional<Point> at) { itemDragged(at); });
    dial->view->onGive = [this](Item item) {
        close();
        if (onGive) onGive(item);
    };
    dial->keys = computer_.keyboard.take([this](WalkingKey key) { pressedKey(key); });
    installMouse(*dial, ends);
    opened_ = std::move(dial);
    opened_->panel->orderFront();
    opened_->view->appear();
    opened_->view->hover(pointerInView(*opened_->panel));
    if (onOpened) onOpened();
}

void PartyDial::installMouse(Opened& dial, DialShape::Ends ends) {
    Panel* panel = dial.panel.get();
    DialView* view = dial.view.get();
    view->onItemDragBegan = [panel](ItemDrag drag) { panel->beginItemDrag(std::move(drag)); };
    auto areas = DialShape::cover(ends);
    for (Rect& area : areas) area = area.offset({shadowMargin, shadowMargin});
    panel->mouseAreas = [areas = std::move(areas)] { return areas; };
    panel->setIgnoresMouse(false);
    panel->onMouseDown = [this, panel, view] { view->mouseDown(pointerInView(*panel)); };
    panel->onMouseDragged = [view] { view->mouseDragged(); };
    panel->onMouseUp = [this, panel, view] { view->mouseUp(pointerInView(*panel)); };
    dial.presses = computer_.pointer.elsewhere.subscribe([this](PointerEvent event) {
        if (event == PointerEvent::leftDown || event == PointerEvent::rightDown) {
            pressedElsewhere();
        }
    });
    dial.hovering = computer_.runLoop.every(
        hoverInterval, [this, panel, view] { view->hover(pointerInView(*panel)); });
}

Point PartyDial::pointerInView(const Panel& panel) const {
    const Rect frame = panel.frame();
    return computer_.pointer.location() - Vector{frame.x + shadowMargin, frame.y + shadowMargin};
}

void PartyDial::close() {
    if (!opened_) return;
    opened_->panel->orderOut();
    opened_->presses.reset();
    opened_->hovering.cancel();
    opened_->keys.reset();
    // One of the panel's own closures may be what closes it, so it goes when that has returned.
    closed_.push_back(std::move(opened_));
    computer_.runLoop.post(lifetime_.guard([this] { closed_.clear(); }));
    if (onClosed) onClosed();
}

/// What means nothing here was meant for another program, which gets what follows.
void PartyDial::pressedKey(WalkingKey key) {
    if (key == WalkingKey::leave || key == WalkingKey::other) return close();
    opened_->view->walk(key);
}

void PartyDial::pick(int index, Point anchor) {
    close();
    party_[static_cast<std::size_t>(index)].toggle(anchor);
}

void PartyDial::itemDragged(std::optional<Point> at) {
    if (opened_ && opened_->panel->alpha() > 0) {
        opened_->panel->setAlpha(0);
        opened_->keys.reset();
    }
    if (onItemDrag) onItemDrag(at);
    if (!at) close();
}

void PartyDial::pressedElsewhere() {
    if (opened_->panel->alpha() <= 0) return;
    // A press on the icon is the beginning of a click, which closes the dial by itself.
    const auto icon = computer_.statusItem.frame();
    if (icon && icon->contains(computer_.pointer.location())) return;
    close();
}

}  // namespace quibbits
