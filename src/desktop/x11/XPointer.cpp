#include "desktop/x11/XPointer.h"

#include <xcb/sync.h>
#include <xcb/xfixes.h>

#include <algorithm>

namespace quibbits::x11 {
namespace {

constexpr Seconds stillAfter = 1;
constexpr Seconds freshFor = 1.0 / 60;  // an answer younger than this is not asked for again
constexpr std::uint32_t firstWheelButton = 4;
// A window manager that looks at a press first passes it on within this time.
constexpr Seconds passedOnWithin = 0.25;
constexpr xcb_timestamp_t sameMoment = 5'000;  // milliseconds: there may be a second press by then

constexpr Seconds intervalOf(Pace pace) {
    switch (pace) {
        case Pace::calm: return 1.0 / 10;
        case Pace::brisk: return 1.0 / 25;
        case Pace::quick: return 1.0 / 60;
    }
    return 1;
}

std::uint32_t findIdleCounter(const Connection& connection) {
    if (!connection.sync) return 0;
    auto* xcb = connection.xcb();
    const auto list =
        reply(xcb, xcb_sync_list_system_counters_reply, xcb_sync_list_system_counters(xcb));
    if (!list) return 0;
    auto each = xcb_sync_list_system_counters_counters_iterator(list.get());
    for (; each.rem > 0; xcb_sync_systemcounter_next(&each)) {
        const std::string_view name(
            xcb_sync_systemcounter_name(each.data),
            static_cast<std::size_t>(xcb_sync_systemcounter_name_length(each.data)));
        if (name == "IDLETIME") return each.data->counter;
    }
    return 0;
}

}  // namespace

XPointer::XPointer(Connection& connection, const XScreens& screens)
    : connection_(connection), screens_(screens), idleCounter_(findIdleCounter(connection)) {
    lastTouch_ = connection.loop().now();
    query();
    toldX_ = x_;
    toldY_ = y_;
    if (!connection.xinput) {
        startAsking();
        return;
    }
    const auto& xinput = *connection.xinput;
    const auto onRaw = [&](int type, std::function<void(const xcb_input_raw_motion_event_t&)> act) {
        subscriptions_.push_back(connection.listenExtended(xinput, type, [act](const auto& event) {
            act(reinterpret_cast<const xcb_input_raw_motion_event_t&>(event));
        }));
    };
    onRaw(XCB_INPUT_RAW_MOTION, [this](const auto&) { rawMotion(); });
    onRaw(XCB_INPUT_RAW_BUTTON_PRESS, [this](const auto& e) { rawButton(true, e); });
    onRaw(XCB_INPUT_RAW_BUTTON_RELEASE, [this](const auto& e) { rawButton(false, e); });
    select(true);
}

XPointer::~XPointer() {
    setHidden(false);
}

void XPointer::select(bool motion) {
    listening_ = motion;
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } wanted{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
             XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE};
    if (motion) wanted.mask |= XCB_INPUT_XI_EVENT_MASK_RAW_MOTION;
    xcb_input_xi_select_events(connection_.xcb(), connection_.root(), 1, &wanted.head);
}

void XPointer::query() const {
    auto* xcb = connection_.xcb();
    const auto answer =
        reply(xcb, xcb_query_pointer_reply, xcb_query_pointer(xcb, connection_.root()));
    if (!answer) return;
    asked_ = connection_.loop().now();
    const auto has = [&](int bit) { return (answer->mask & bit) != 0; };
    buttons_ = {.left = has(XCB_BUTTON_MASK_1),
                .right = has(XCB_BUTTON_MASK_3),
                .middle = has(XCB_BUTTON_MASK_2)};
    modifiers_ = {.command = has(XCB_MOD_MASK_4),
                  .option = has(XCB_MOD_MASK_1),
                  .control = has(XCB_MOD_MASK_CONTROL),
                  .shift = has(XCB_MOD_MASK_SHIFT)};
    x_ = answer->root_x;
    y_ = answer->root_y;
}

Point XPointer::location() const {
    // While raw motion is listened for, the position is the last one known.
    if (!listening_ && connection_.loop().now() - asked_ > freshFor) query();
    return screens_.coordinates().points(x_, y_);
}

Modifiers XPointer::modifiers() const {
    if (connection_.loop().now() - asked_ > freshFor) query();
    return modifiers_;
}

Seconds XPointer::idle() const {
    if (idleCounter_ == 0) return untouched();
    auto* xcb = connection_.xcb();
    const auto counter =
        reply(xcb, xcb_sync_query_counter_reply, xcb_sync_query_counter(xcb, idleCounter_));
    if (!counter) return untouched();
    return (static_cast<double>(counter->counter_value.hi) * 4294967296.0 +
            counter->counter_value.lo) /
           1000;
}

Seconds XPointer::untouched() const {
    return connection_.loop().now() - lastTouch_;
}

PointerPicture XPointer::picture() const {
    if (!connection_.xfixes) return {};
    auto* xcb = connection_.xcb();
    const auto cursor =
        reply(xcb, xcb_xfixes_get_cursor_image_reply, xcb_xfixes_get_cursor_image(xcb));
    if (!cursor) return {};
    const std::uint32_t* pixels = xcb_xfixes_get_cursor_image_cursor_image(cursor.get());
    const int count = xcb_xfixes_get_cursor_image_cursor_image_length(cursor.get());
    const double scale = screens_.coordinates().scale;
    return {Image::fromArgb(cursor->width, cursor->height, {pixels, pixels + count}),
            {cursor->width / scale, cursor->height / scale},
            {cursor->xhot / scale, cursor->yhot / scale}};
}

bool XPointer::setHidden(bool hidden) {
    if (hidden == hidden_) return true;
    if (!connection_.xfixes) return false;
    hidden_ = hidden;
    if (hidden) {
        xcb_xfixes_hide_cursor(connection_.xcb(), connection_.root());
    } else {
        xcb_xfixes_show_cursor(connection_.xcb(), connection_.root());
    }
    xcb_flush(connection_.xcb());
    return true;
}

void XPointer::setPace(const void* who, Pace pace) {
    if (pace == Pace::calm) {
        paces_.erase(who);
    } else {
        paces_[who] = pace;
    }
    if (asking_ && askingInterval_ != interval()) startAsking();
}

Seconds XPointer::interval() const {
    Pace pace = buttons_.any() ? Pace::quick : Pace::calm;
    for (const auto& [who, wish] : paces_) pace = std::max(pace, wish);
    return intervalOf(pace);
}

bool XPointer::learn(int rootX, int rootY, std::optional<MouseButtons> buttons) {
    const bool moved = rootX != toldX_ || rootY != toldY_;
    if (!moved && !buttons) return false;
    const bool news = moved || *buttons != buttons_;
    x_ = toldX_ = rootX;
    y_ = toldY_ = rootY;
    if (buttons) buttons_ = *buttons;
    asked_ = lastTouch_ = lastMove_ = connection_.loop().now();
    if (listening_) select(false);
    if (!asking_ || askingInterval_ != interval()) startAsking();
    if (news) touched.emit();
    return news;
}

void XPointer::rawMotion() {
    if (!listening_) return;  // sent before the server heard that enough is known
    select(false);
    lastTouch_ = lastMove_ = connection_.loop().now();
    startAsking();
    ask();
}

void XPointer::rawButton(bool pressed, const xcb_input_raw_button_press_event_t& event) {
    const std::uint32_t button = event.detail;
    lastTouch_ = connection_.loop().now();
    touched.emit();
    if (button >= firstWheelButton) return;
    // The event tells the physical button; left-handed users have another mapping.
    query();
    const auto before = std::exchange(toldButtons_, buttons_);
    if (hasMoved()) tellMoved();
    if (listening_) select(false);
    lastMove_ = lastTouch_;
    if (!asking_ || askingInterval_ != interval()) startAsking();
    const auto has = [](const MouseButtons& now, const MouseButtons& then, auto which) {
        return now.*which && !(then.*which);
    };
    const auto& [more, less] = pressed ? std::pair(buttons_, before) : std::pair(before, buttons_);
    const bool quickClick = !buttons_.any() && !before.any();  // over before it was asked about
    const bool left = has(more, less, &MouseButtons::left) || (quickClick && button == 1);
    const bool right = has(more, less, &MouseButtons::right) || (quickClick && button == 3);
    if (pressed && left) pressedSomewhere(PointerEvent::leftDown, event.time);
    if (pressed && right) pressedSomewhere(PointerEvent::rightDown, event.time);
    if (!pressed && left && !owner_) elsewhere.emit(PointerEvent::leftUp);
}

/// Tells the press unless a window of this program gets it. Its event, if there is one, has arrived
/// with this one and is dispatched before the next job, or it is with the window manager.
void XPointer::pressedSomewhere(PointerEvent what, xcb_timestamp_t time) {
    auto tell = lifetime_.guard([this, what, time] {
        const bool isReceived = receivedPress_ - time <= sameMoment;  // server times wrap around
        if (!isReceived) elsewhere.emit(what);
    });
    if (owner_ || overOwnWindow_) {
        connection_.loop().after(passedOnWithin, std::move(tell));
    } else {
        connection_.loop().post(std::move(tell));
    }
}

void XPointer::startAsking() {
    askingInterval_ = interval();
    asking_ = connection_.loop().every(
        askingInterval_, [this] { ask(); }, askingInterval_ / 10);
}

void XPointer::ask() {
    const Instant now = connection_.loop().now();
    query();
    if (hasMoved()) {
        lastTouch_ = lastMove_ = now;
        tellMoved();
    } else if (now - lastMove_ >= stillAfter && connection_.xinput) {
        asking_.cancel();
        select(true);
        // A move between the last answer and this request would go unheard.
        query();
        if (hasMoved()) tellMoved();
        return;
    }
    if (asking_ && askingInterval_ != interval()) startAsking();
}

void XPointer::tellMoved() {
    touched.emit();
    toldX_ = x_;
    toldY_ = y_;
    tracked.emit();
    if (owner_) {
        owner_->pointerMoved();
    } else {
        elsewhere.emit(buttons_.left ? PointerEvent::leftDragged : PointerEvent::moved);
    }
}

}  // namespace quibbits::x11
