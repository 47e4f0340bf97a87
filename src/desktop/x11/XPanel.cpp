#include "desktop/x11/XPanel.h"

#include <algorithm>

#include "desktop/x11/XPanels.h"

namespace quibbits::x11 {
namespace {

constexpr Seconds frameInterval = 1.0 / 60;
constexpr Seconds keepBufferFor = 5;

xcb_rectangle_t rectangle(const PixelRect& r) {
    return {static_cast<std::int16_t>(r.x), static_cast<std::int16_t>(r.y),
            static_cast<std::uint16_t>(r.width), static_cast<std::uint16_t>(r.height)};
}

bool sameRectangles(const std::vector<xcb_rectangle_t>& a, const std::vector<xcb_rectangle_t>& b) {
    return std::ranges::equal(a, b, [](const auto& left, const auto& right) {
        return left.x == right.x && left.y == right.y && left.width == right.width &&
               left.height == right.height;
    });
}

}  // namespace

XPanel::XPanel(XPanels& panels, const Panels::Spec& spec)
    : panels_(panels),
      connection_(panels.connection_),
      pointer_(panels.pointer_),
      tree_(panels.engine_),
      frame_(spec.frame),
      coversScreen_(panels.screens_.main() && spec.frame == panels.screens_.main()->frame),
      window_(connection_, panels.visual_, panels.screens_.coordinates().pixels(spec.frame),
              spec.level, panels.managed_),
      shape_(connection_),
      transfer_(connection_) {
    panels_.panels_.push_back(this);
    tree_.setFrameInterval(frameInterval);
    tree_.setSurface(frame_.size(), panels_.screens_.coordinates().scale);
    tree_.onChange = [this] { frameSoon(); };
    compositorChanged();
    if (spec.acceptsDrops) {
        drops_.emplace(
            connection_, window_.id(),
            [this](const auto& drag) { return ask(onDragOver, dragInfo(drag)); },
            [this](const auto& drag) { return ask(onDrop, dragInfo(drag)); });
    }
    listen();
}

XPanel::~XPanel() {
    tree_.onChange = nullptr;
    pointer_.takeBack(*this);
    pointer_.setPace(this, Pace::calm);
    panels_.forget(*this);
}

void XPanel::listen() {
    const auto on = [this](int type, auto handler) {
        subscriptions_.push_back(connection_.listen(type, handler));
    };
    on(XCB_EXPOSE, [this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_expose_event_t&>(e);
        if (event.window == window_.id() && !shape_.hasCaused(e)) exposed(event);
    });
    on(XCB_MAP_NOTIFY, [this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_map_notify_event_t&>(e);
        if (event.window == window_.id()) window_.assertState();
    });
    on(XCB_CONFIGURE_NOTIFY, [this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_configure_notify_event_t&>(e);
        if (event.window == window_.id()) window_.configured(event.width, event.height);
    });
    on(XCB_BUTTON_PRESS, [this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_button_press_event_t&>(e);
        if (event.event == window_.id()) buttonPressed(event);
    });
    on(XCB_BUTTON_RELEASE, [this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_button_press_event_t&>(e);
        if (event.event == window_.id()) buttonReleased(event);
    });
    on(XCB_ENTER_NOTIFY, [this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_enter_notify_event_t&>(e);
        if (event.event != window_.id()) return;
        pointer_.give(*this);
        if (pointer_.learn(event.root_x, event.root_y, {})) {
            pointerMoved();
        } else {
            updateInput();  // a creature has come under a pointer at rest
        }
    });
    on(XCB_LEAVE_NOTIFY, [this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_enter_notify_event_t&>(e);
        if (event.event != window_.id() || holdsLeft_) return;
        pointer_.takeBack(*this);
        const bool moved = pointer_.learn(event.root_x, event.root_y, {});
        updateInput();
        // When somebody takes the pointer, be it a menu of this program, it goes nowhere.
        if (moved && event.mode != XCB_NOTIFY_MODE_GRAB)
            pointer_.elsewhere.emit(PointerEvent::moved);
    });
    subscriptions_.push_back(pointer_.tracked.subscribe([this] { updateInput(); }));
}

// Place and visibility.

void XPanel::setFrame(Rect frame) {
    frame_ = frame;
    coversScreen_ = panels_.screens_.main() && frame == panels_.screens_.main()->frame;
    place();
}

void XPanel::place() {
    const auto& coordinates = panels_.screens_.coordinates();
    window_.setFrame(coordinates.pixels(frame_));
    tree_.setSurface(frame_.size(), coordinates.scale);
    updateInput();
    frameSoon();
}

void XPanel::screensChanged() {
    const auto screen = panels_.screens_.main();
    if (!screen) return;
    if (coversScreen_) frame_ = screen->frame;
    place();
}

void XPanel::compositorChanged() {
    const bool shaped = !panels_.hasCompositor();
    if (shaped == shape_.isActive()) return;
    shape_.setActive(shaped, window_.id());
    tree_.damageAll();
    frameSoon();
}

void XPanel::windowManagerChanged() {
    window_.setManaged(panels_.managed_);
    window_.assertState();
}

void XPanel::orderFront() {
    window_.show();
    updateInput();
    frameSoon();
}

void XPanel::orderOut() {
    window_.hide();
    if (panels_.menu_ && panels_.menuOwner_ == this) panels_.menu_.reset();
    nextFrame_.cancel();
    holdsLeft_ = false;
    pointer_.takeBack(*this);
    pointer_.setPace(this, Pace::calm);
    askInputAgain_.cancel();
}

void XPanel::setAlpha(double alpha) {
    alpha_ = alpha;
    const Transaction still(panels_.layers(), Transaction::withoutActions());
    tree_.root().setOpacity(alpha);
    updateInput();
}

void XPanel::beginItemDrag(ItemDrag drag) {
    holdsLeft_ = false;  // the release is the drag's
    panels_.beginItemDrag(std::move(drag), *this);
}

void XPanel::popUp(Menu menu, Point at) {
    panels_.openMenu(std::move(menu), at + Vector{frame_.x, frame_.y}, this);
}

// Painting.

void XPanel::exposed(const xcb_expose_event_t& event) {
    exposed_ = exposed_.united({event.x, event.y, event.width, event.height});
    frameSoon();
}

void XPanel::frameSoon() {
    if (!window_.isShown()) return;
    frameAt(lastFrame_ + frameInterval);
}

void XPanel::frameAt(Instant instant) {
    auto& loop = connection_.loop();
    nextFrame_ = loop.timer(std::max(instant - loop.now(), 0.0), [this] { paintFrame(); });
}

void XPanel::paintFrame() {
    nextFrame_.cancel();
    const Instant now = connection_.loop().now();
    ++stats_.wakes;
    auto damage = tree_.nextFrame(now);
    const PixelRect surface{0, 0, window_.frame().width, window_.frame().height};
    if (!exposed_.isEmpty()) damage.push_back(std::exchange(exposed_, {}));
    std::size_t pixels = 0;
    for (auto& area : damage) {
        area = area.intersected(surface);
        pixels += static_cast<std::size_t>(area.area());
    }
    const bool drawn = pixels > 0;
    shape_.beginFrame();
    // A frame reaches the server in one piece: between two of its parts a creature would be cut.
    if (drawn) transfer_.prepare(pixels);
    for (const auto& area : damage) {
        if (!area.isEmpty()) paint(area);
    }
    if (drawn) {
        ++stats_.repaints;
        lastFrame_ = now;
        restSoon();
        if (mouseAreas) updateInput();
    }
    if (const auto wake = tree_.nextWake(now)) frameAt(std::max(*wake, lastFrame_ + frameInterval));
}

void XPanel::paint(const PixelRect& area) {
    const int rows = transfer_.rowsAtOnce(area.width);
    for (int done = 0; done < area.height; done += rows) {
        const PixelRect band{area.x, area.y + done, area.width, std::min(rows, area.height - done)};
        auto* pixels = transfer_.reserve(band.width, band.height);
        panels_.painter_.paint(tree_, band, {.pixels = pixels, .stride = band.width, .area = band});
        if (shape_.isActive()) {
            shape_.update(band, pixels);
            shape_.apply(window_.id());
        }
        transfer_.send(window_.id(), window_.context(), band);
    }
    stats_.pixels +=
        static_cast<std::uint64_t>(area.width) * static_cast<std::uint64_t>(area.height);
}

/// Gives the drawing buffer back once nothing has been drawn for a while.
void XPanel::restSoon() {
    if (rest_) return;
    rest_ = connection_.loop().timer(
        keepBufferFor,
        [this] {
            rest_.cancel();
            if (connection_.loop().now() - lastFrame_ < keepBufferFor) return restSoon();
            transfer_.release();
        },
        keepBufferFor);
}

// The mouse.

void XPanel::setIgnoresMouse(bool ignores) {
    // Where the areas that take the mouse are known, they alone do, and in time for a quick press.
    if (mouseAreas || ignores == hotArea_.ignores()) return;
    hotArea_.setIgnores(ignores);
    updateInput();
}

void XPanel::updateInput() {
    auto& loop = connection_.loop();
    if (mouseAreas) hotArea_.setWanted(mouseAreas(), loop.now());
    const Point pointer = pointer_.location() - Vector{frame_.x, frame_.y};
    auto decision = hotArea_.decide(pointer, loop.now());
    if (alpha_ <= 0) decision.region = {};

    std::vector<xcb_rectangle_t> region;
    const auto& window = window_.frame();
    const PixelRect surface{0, 0, window.width, window.height};
    if (decision.region.whole) region.push_back(rectangle(surface));
    for (const auto& rect : decision.region.rects) {
        auto pixels = panels_.screens_.coordinates().pixels(rect.offset({frame_.x, frame_.y}));
        pixels.x -= window.x;
        pixels.y -= window.y;
        const auto inside = pixels.intersected(surface);
        if (!inside.isEmpty()) region.push_back(rectangle(inside));
    }
    if (!sameRectangles(region, inputRegion_)) {
        inputRegion_ = region;
        window_.setInputRegion(std::move(region));
        ++stats_.regionChanges;
    }
    pointer_.setPace(this, decision.isClose   ? Pace::quick
                           : decision.isStale ? Pace::brisk
                                              : Pace::calm);
    askInputAgain_.cancel();
    if (decision.askAgain) {
        askInputAgain_ =
            loop.timer(std::max(*decision.askAgain - loop.now(), 0.0), [this] { updateInput(); });
    }
}

void XPanel::pointerMoved() {
    updateInput();
    tell(holdsLeft_ ? onMouseDragged : onMouseMoved);
}

/// The listener may end this panel: it is the last to be called.
void XPanel::tell(std::function<void()> listener) {
    if (listener) listener();
}

/// As may this one.
bool XPanel::ask(std::function<bool(const DragInfo&)> listener, const DragInfo& drag) {
    return listener && listener(drag);
}

void XPanel::buttonPressed(const xcb_button_press_event_t& event) {
    auto buttons = pointer_.buttons();
    if (event.detail == XCB_BUTTON_INDEX_1) buttons.left = holdsLeft_ = true;
    if (event.detail == XCB_BUTTON_INDEX_3) buttons.right = true;
    pointer_.give(*this);
    pointer_.receivedPress(event.time);
    window_.pressed();
    pointer_.learn(event.root_x, event.root_y, buttons);
    if (event.detail == XCB_BUTTON_INDEX_1) {
        tell(onMouseDown);
    } else if (event.detail == XCB_BUTTON_INDEX_3) {
        tell(onRightMouseDown);
    }
}

void XPanel::buttonReleased(const xcb_button_press_event_t& event) {
    auto buttons = pointer_.buttons();
    if (event.detail == XCB_BUTTON_INDEX_1) buttons.left = false;
    if (event.detail == XCB_BUTTON_INDEX_3) buttons.right = false;
    pointer_.learn(event.root_x, event.root_y, buttons);
    if (event.detail != XCB_BUTTON_INDEX_1 || !std::exchange(holdsLeft_, false)) return;
    if (!takesMouse(event.event_x, event.event_y)) pointer_.takeBack(*this);  // let go outside
    tell(onMouseUp);
}

bool XPanel::takesMouse(int x, int y) const {
    return std::ranges::any_of(inputRegion_, [&](const xcb_rectangle_t& r) {
        return x >= r.x && y >= r.y && x < r.x + r.width && y < r.y + r.height;
    });
}

DragInfo XPanel::dragInfo(const DropTarget::Drag& drag) const {
    const Point at = panels_.screens_.coordinates().points(drag.rootX, drag.rootY);
    return {.location = at - Vector{frame_.x, frame_.y}, .item = drag.item, .files = drag.files};
}

PanelStats XPanel::stats() const {
    auto now = stats_;
    now.bufferBytes = transfer_.heldBytes();
    return now;
}

}  // namespace quibbits::x11
