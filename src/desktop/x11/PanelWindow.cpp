#include "desktop/x11/PanelWindow.h"

#include <unistd.h>
#include <xcb/shape.h>
#include <xcb/xcb_icccm.h>

#include <algorithm>

#include "desktop/x11/Properties.h"

namespace quibbits::x11 {
namespace {

constexpr std::uint32_t everyDesktop = 0xffffffff;
constexpr int mostCorrections = 5;  // of a size that a window manager keeps changing
constexpr Seconds settled = 0.15;   // after the last news of a size or a place
constexpr std::uint8_t depth = 32;

xcb_visualid_t visualWithOpacity(const xcb_screen_t& screen) {
    auto depths = xcb_screen_allowed_depths_iterator(&screen);
    for (; depths.rem > 0; xcb_depth_next(&depths)) {
        if (depths.data->depth != depth) continue;
        auto visuals = xcb_depth_visuals_iterator(depths.data);
        for (; visuals.rem > 0; xcb_visualtype_next(&visuals)) {
            const auto& visual = *visuals.data;
            if (visual._class == XCB_VISUAL_CLASS_TRUE_COLOR && visual.red_mask == 0xff0000 &&
                visual.green_mask == 0xff00 && visual.blue_mask == 0xff) {
                return visual.visual_id;
            }
        }
    }
    return 0;
}

}  // namespace

PanelVisual::PanelVisual(Connection& connection)
    : connection_(connection), visual_(visualWithOpacity(connection.screen())) {
    if (!visual_) return;
    colors_ = xcb_generate_id(connection.xcb());
    xcb_create_colormap(connection.xcb(), XCB_COLORMAP_ALLOC_NONE, colors_, connection.root(),
                        visual_);
}

PanelVisual::~PanelVisual() {
    if (colors_) xcb_free_colormap(connection_.xcb(), colors_);
}

PanelWindow::PanelWindow(Connection& connection, const PanelVisual& visual, PixelRect frame,
                         PanelLevel level, Managed managed)
    : connection_(connection),
      id_(xcb_generate_id(connection.xcb())),
      context_(xcb_generate_id(connection.xcb())),
      frame_(frame),
      level_(level),
      managed_(managed) {
    auto* xcb = connection.xcb();
    xcb_create_window_value_list_t values{};
    values.background_pixel = 0;
    values.border_pixel = 0;
    values.override_redirect = isUnmanaged();
    values.event_mask = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                        XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                        XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW |
                        XCB_EVENT_MASK_PROPERTY_CHANGE;  // large drops come by properties
    values.colormap = visual.colors();
    xcb_create_window_aux(
        xcb, depth, id_, connection.root(), static_cast<std::int16_t>(frame.x),
        static_cast<std::int16_t>(frame.y), static_cast<std::uint16_t>(frame.width),
        static_cast<std::uint16_t>(frame.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual.visual(),
        XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK |
            XCB_CW_COLORMAP,
        &values);
    const std::uint32_t noExposures = 0;
    xcb_create_gc(xcb, context_, id_, XCB_GC_GRAPHICS_EXPOSURES, &noExposures);

    const auto atom = [&](Atom name) { return connection.atom(name); };
    setTextProperty(connection, id_, atom(Atom::windowName), atom(Atom::utf8String), "Quibbits");
    setTextProperty(connection, id_, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, "Quibbits");
    setTextProperty(connection, id_, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING,
                    std::string_view("quibbits\0Quibbits\0", 18));
    setProperty(connection, id_, atom(Atom::pid), XCB_ATOM_CARDINAL,
                {{static_cast<std::uint32_t>(getpid())}});
    setProperty(connection, id_, atom(Atom::windowType), XCB_ATOM_ATOM, {{atom(Atom::typeDock)}});
    xcb_icccm_wm_hints_t hints{};
    xcb_icccm_wm_hints_set_input(&hints, 0);
    xcb_icccm_set_wm_hints(xcb, id_, &hints);
    configure();
    sendInputRegion();
}

PanelWindow::~PanelWindow() {
    xcb_free_gc(connection_.xcb(), context_);
    xcb_destroy_window(connection_.xcb(), id_);
}

void PanelWindow::setFrame(const PixelRect& frame) {
    corrections_ = aside_ = below_ = 0;
    if (frame == frame_) return;
    frame_ = frame;
    configure();
}

void PanelWindow::configure() {
    auto* xcb = connection_.xcb();
    xcb_size_hints_t hints{};
    xcb_icccm_size_hints_set_position(&hints, 1, frame_.x + aside_, frame_.y + below_);
    xcb_icccm_size_hints_set_size(&hints, 1, frame_.width, frame_.height);
    xcb_icccm_size_hints_set_min_size(&hints, frame_.width, frame_.height);
    xcb_icccm_size_hints_set_max_size(&hints, frame_.width, frame_.height);
    xcb_icccm_set_wm_normal_hints(xcb, id_, &hints);
    const xcb_configure_window_value_list_t values{
        .x = frame_.x + aside_,
        .y = frame_.y + below_,
        .width = static_cast<std::uint32_t>(frame_.width),
        .height = static_cast<std::uint32_t>(frame_.height)};
    xcb_configure_window_aux(xcb, id_,
                             XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                                 XCB_CONFIG_WINDOW_HEIGHT,
                             &values);
}

void PanelWindow::configured(int width, int height) {
    if (corrections_ == mostCorrections) return;
    // While a window manager is still at it, the place is neither the former nor the new one.
    settling_ =
        connection_.loop().timer(settled, [this, width, height] { correct(width, height); });
}

void PanelWindow::correct(int width, int height) {
    settling_.cancel();
    const bool hasSize = width == frame_.width && height == frame_.height;
    if (isInPlace() && hasSize) return;
    ++corrections_;
    configure();
}

/// Some window managers put a frame around every window and move what is in it. Measures that, so
/// that the next request allows for it.
bool PanelWindow::isInPlace() {
    auto* xcb = connection_.xcb();
    const auto place = reply(xcb, xcb_translate_coordinates_reply,
                             xcb_translate_coordinates(xcb, id_, connection_.root(), 0, 0));
    if (!place || (place->dst_x == frame_.x && place->dst_y == frame_.y)) return true;
    aside_ += frame_.x - place->dst_x;
    below_ += frame_.y - place->dst_y;
    return false;
}

void PanelWindow::setLevel(PanelLevel level) {
    if (level == level_) return;
    const bool before = isUnmanaged();
    level_ = level;
    settle(before);
}

void PanelWindow::setManaged(Managed managed) {
    if (managed == managed_) return;
    const bool before = isUnmanaged();
    managed_ = managed;
    settle(before);
}

/// After a change of what decides whether a window manager has the window.
void PanelWindow::settle(bool wasUnmanaged) {
    if (wasUnmanaged != isUnmanaged()) {
        const bool shown = shown_;
        hide();
        const std::uint32_t unmanaged = isUnmanaged();
        xcb_change_window_attributes(connection_.xcb(), id_, XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
        if (shown) show();
    } else if (shown_) {
        assertState();
    }
}

void PanelWindow::othersChanged() {
    if (!shown_) return;
    if (isUnmanaged()) return stack();
    if (level_ != PanelLevel::desktop) return;
    auto under = ordinaryWindowsUnder();
    const bool isNews = under != leftUnder_;  // a window manager that will not is asked once
    leftUnder_ = std::move(under);
    if (!leftUnder_.empty() && isNews) stack();
}

void PanelWindow::pressed() {
    if (shown_ && !isUnmanaged() && level_ == PanelLevel::desktop) stack();
}

/// What the window manager lists under the window, but for the desktop and other panels.
std::vector<xcb_window_t> PanelWindow::ordinaryWindowsUnder() const {
    const auto list = propertyOf(connection_, connection_.root(), Atom::clientListStacking);
    const auto lowestFirst = list.numbers();
    const auto own = std::ranges::find(lowestFirst, id_);
    if (own == lowestFirst.end()) return {};
    struct Asked {
        xcb_window_t window;
        PropertyRequest type, state;
    };
    std::vector<Asked> asked;
    for (auto each = lowestFirst.begin(); each != own; ++each) {
        asked.push_back({*each,
                         PropertyRequest(connection_, *each, connection_.atom(Atom::windowType)),
                         PropertyRequest(connection_, *each, connection_.atom(Atom::state))});
    }
    std::vector<xcb_window_t> under;
    for (const auto& one : asked) {
        const auto type = one.type.wait();
        const bool isKeptLow = one.state.wait().contains(connection_.atom(Atom::stateBelow));
        if (isKeptLow || type.contains(connection_.atom(Atom::typeDesktop)) ||
            type.contains(connection_.atom(Atom::typeDock))) {
            continue;
        }
        under.push_back(one.window);
    }
    return under;
}

/// The state that a window manager reads when the window is mapped.
void PanelWindow::writeState() {
    const auto atom = [this](Atom name) { return connection_.atom(name); };
    setProperty(connection_, id_, atom(Atom::desktop), XCB_ATOM_CARDINAL, {{everyDesktop}});
    setProperty(
        connection_, id_, atom(Atom::state), XCB_ATOM_ATOM,
        {{atom(level_ == PanelLevel::desktop ? Atom::stateBelow : Atom::stateAbove),
          atom(Atom::stateSticky), atom(Atom::stateSkipTaskbar), atom(Atom::stateSkipPager)}});
}

void PanelWindow::show() {
    if (!shown_) {
        shown_ = true;
        writeState();
        xcb_map_window(connection_.xcb(), id_);
    }
    stack();
}

/// Puts the window on top of its level. The lowest level is under all windows, and some window
/// managers count a dock among them however low its state says it is.
void PanelWindow::stack() {
    const std::uint32_t mode =
        level_ == PanelLevel::desktop ? XCB_STACK_MODE_BELOW : XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection_.xcb(), id_, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
}

void PanelWindow::hide() {
    if (!shown_) return;
    shown_ = false;
    xcb_unmap_window(connection_.xcb(), id_);
    // A window manager learns from this message that the window is meant to be gone.
    xcb_unmap_notify_event_t gone{};
    gone.response_type = XCB_UNMAP_NOTIFY;
    gone.event = connection_.root();
    gone.window = id_;
    xcb_send_event(connection_.xcb(), 0, connection_.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&gone));
}

void PanelWindow::assertState() {
    sendInputRegion();
    if (isUnmanaged()) return stack();
    enum Action : std::uint32_t { remove = 0, add = 1 };
    constexpr std::uint32_t fromApplication = 1;
    const auto change = [&](Action action, Atom first, Atom second) {
        connection_.messageRoot(
            id_, Atom::state,
            {action, connection_.atom(first), second == Atom::count ? 0 : connection_.atom(second),
             fromApplication, 0});
    };
    // Some window managers keep both states, and the old one wins, unless it goes first.
    const bool low = level_ == PanelLevel::desktop;
    change(remove, low ? Atom::stateAbove : Atom::stateBelow, Atom::count);
    change(add, low ? Atom::stateBelow : Atom::stateAbove, Atom::count);
    change(add, Atom::stateSkipTaskbar, Atom::stateSkipPager);
    change(add, Atom::stateSticky, Atom::count);
    stack();
}

void PanelWindow::setInputRegion(std::vector<xcb_rectangle_t> region) {
    inputRegion_ = std::move(region);
    sendInputRegion();
}

void PanelWindow::sendInputRegion() {
    if (!connection_.shape) return;
    xcb_shape_rectangles(connection_.xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT,
                         XCB_CLIP_ORDERING_UNSORTED, id_, 0, 0,
                         static_cast<std::uint32_t>(inputRegion_.size()), inputRegion_.data());
}

}  // namespace quibbits::x11
