#include "desktop/x11/SystemTray.h"

#include <xcb/shape.h>

#include <algorithm>

#include "desktop/session/TrayPictures.h"
#include "desktop/x11/DrawnShape.h"
#include "desktop/x11/Properties.h"

namespace quibbits::x11 {
namespace {

constexpr std::uint8_t seeThroughDepth = 32;
constexpr int usualSide = 24;  // pixels, until the tray says
constexpr int largestSide = 256;

/// The picture as the server takes it: premultiplied, a word a pixel.
std::vector<std::uint32_t> pixelsOf(const session::TrayPicture& picture) {
    std::vector<std::uint32_t> pixels;
    pixels.reserve(picture.bytes.size() / 4);
    for (std::size_t i = 0; i + 3 < picture.bytes.size(); i += 4) {
        const std::uint32_t alpha = picture.bytes[i];
        const auto part = [&](std::size_t n) { return picture.bytes[i + n] * alpha / 255; };
        pixels.push_back(alpha << 24 | part(1) << 16 | part(2) << 8 | part(3));
    }
    return pixels;
}

}  // namespace

SystemTray::SystemTray(Connection& connection, const XScreens& screens, XPointer& pointer)
    : connection_(connection), screens_(screens), pointer_(pointer), visual_(connection) {
    // A new tray tells the clients of the root window.
    connection.selectRootEvents(XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    listen();
}

SystemTray::~SystemTray() {
    undock();
}

void SystemTray::listen() {
    const auto on = [this](int type, auto handler) {
        subscriptions_.push_back(connection_.listen(type, handler));
    };
    on(XCB_CLIENT_MESSAGE, [this](const auto& e) {
        const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(e);
        if (wanted_ && message.type == connection_.atom(Atom::manager) &&
            message.data.data32[1] == connection_.atom(Atom::trayManager)) {
            findManager();
        }
    });
    on(XCB_DESTROY_NOTIFY, [this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_destroy_notify_event_t&>(e);
        if (manager_ != 0 && event.window == manager_) findManager();
    });
    on(XCB_MAP_NOTIFY, [this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_map_notify_event_t&>(e);
        if (event.window == window_) isShown_ = true;
    });
    on(XCB_UNMAP_NOTIFY, [this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_unmap_notify_event_t&>(e);
        if (event.window == window_) isShown_ = false;
    });
    on(XCB_CONFIGURE_NOTIFY, [this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_configure_notify_event_t&>(e);
        if (event.window != window_) return;
        width_ = event.width;
        height_ = event.height;
        draw();
    });
    on(XCB_EXPOSE, [this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_expose_event_t&>(e);
        if (event.window == window_ && event.count == 0) draw();
    });
    for (const int type : {XCB_ENTER_NOTIFY, XCB_LEAVE_NOTIFY}) {
        on(type, [this, type](const auto& e) {
            const auto& event = reinterpret_cast<const xcb_enter_notify_event_t&>(e);
            if (event.event != window_) return;
            pointer_.setOverOwnWindow(type == XCB_ENTER_NOTIFY);
            if (onHover) onHover(type == XCB_ENTER_NOTIFY);
        });
    }
    on(XCB_BUTTON_PRESS, [this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_button_press_event_t&>(e);
        if (event.event == window_) pointer_.receivedPress(event.time);
    });
    on(XCB_BUTTON_RELEASE, [this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_button_release_event_t&>(e);
        if (event.event == window_) released(event);
    });
}

void SystemTray::setImage(Image image) {
    image_ = std::move(image);
    draw();
}

void SystemTray::setWanted(bool wanted) {
    if (wanted == wanted_) return;
    wanted_ = wanted;
    if (wanted) {
        findManager();
    } else {
        undock();
        manager_ = 0;
    }
}

std::optional<Rect> SystemTray::frame() const {
    if (!isShown_) return std::nullopt;
    auto* xcb = connection_.xcb();
    const auto place = reply(xcb, xcb_translate_coordinates_reply,
                             xcb_translate_coordinates(xcb, window_, connection_.root(), 0, 0));
    if (!place) return std::nullopt;
    return screens_.coordinates().points({place->dst_x, place->dst_y, width_, height_});
}

// The tray.

void SystemTray::findManager() {
    auto* xcb = connection_.xcb();
    undock();
    const auto owner = reply(xcb, xcb_get_selection_owner_reply,
                             xcb_get_selection_owner(xcb, connection_.atom(Atom::trayManager)));
    manager_ = owner ? owner->owner : 0;
    if (manager_ == 0) return;
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(xcb, manager_, XCB_CW_EVENT_MASK, &mask);
    dock();
}

/// Makes the window with the visual that the tray wants and asks the tray to take it in. Without a
/// see-through visual the window is cut to the picture instead.
void SystemTray::dock() {
    auto* xcb = connection_.xcb();
    const auto wanted = propertyOf(connection_, manager_, Atom::trayVisual).number();
    const bool seeThrough = visual_ && wanted == visual_.visual();
    depth_ = seeThrough ? seeThroughDepth : connection_.screen().root_depth;
    window_ = xcb_generate_id(xcb);
    width_ = height_ = usualSide;
    xcb_create_window_value_list_t values{};
    values.background_pixel = 0;
    values.border_pixel = 0;
    values.event_mask = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                        XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                        XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW;
    values.colormap = seeThrough ? visual_.colors() : connection_.screen().default_colormap;
    xcb_create_window_aux(
        xcb, depth_, window_, connection_.root(), 0, 0, usualSide, usualSide, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT,
        seeThrough ? visual_.visual() : connection_.screen().root_visual,
        XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP, &values);
    context_ = xcb_generate_id(xcb);
    xcb_create_gc(xcb, context_, window_, 0, nullptr);
    setTextProperty(connection_, window_, connection_.atom(Atom::windowName),
                    connection_.atom(Atom::utf8String), "Quibbits");
    setTextProperty(connection_, window_, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING,
                    std::string_view("quibbits\0Quibbits\0", 18));
    constexpr std::uint32_t protocol = 0;
    constexpr std::uint32_t mayBeShown = 1;
    const auto info = connection_.atom(Atom::embedInfo);
    setProperty(connection_, window_, info, info, {{protocol, mayBeShown}});

    constexpr std::uint32_t requestDock = 0;
    connection_.message({.to = manager_, .about = manager_, .type = Atom::trayRequest},
                        {XCB_CURRENT_TIME, requestDock, window_});
    xcb_flush(xcb);
}

void SystemTray::undock() {
    if (window_ == 0) return;
    xcb_free_gc(connection_.xcb(), context_);
    xcb_destroy_window(connection_.xcb(), window_);
    xcb_flush(connection_.xcb());
    window_ = 0;
    isShown_ = false;
    pointer_.setOverOwnWindow(false);
}

// The picture.

void SystemTray::draw() {
    if (window_ == 0 || !image_) return;
    auto* xcb = connection_.xcb();
    const int side = std::clamp(std::min(width_, height_), 1, largestSide);
    const auto pixels = pixelsOf(session::trayPicture(image_, side));
    if (depth_ != seeThroughDepth) cutTo(pixels);
    xcb_clear_area(xcb, 0, window_, 0, 0, 0, 0);
    xcb_put_image(xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, window_, context_,
                  static_cast<std::uint16_t>(side), static_cast<std::uint16_t>(side),
                  static_cast<std::int16_t>((width_ - side) / 2),
                  static_cast<std::int16_t>((height_ - side) / 2), 0, depth_,
                  static_cast<std::uint32_t>(pixels.size() * sizeof(pixels[0])),
                  reinterpret_cast<const std::uint8_t*>(pixels.data()));
}

void SystemTray::cutTo(const std::vector<std::uint32_t>& pixels) {
    if (!connection_.shape) return;
    const int side = std::clamp(std::min(width_, height_), 1, largestSide);
    const auto drawn =
        opaqueRectangles({(width_ - side) / 2, (height_ - side) / 2, side, side}, pixels.data());
    xcb_shape_rectangles(connection_.xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                         XCB_CLIP_ORDERING_UNSORTED, window_, 0, 0,
                         static_cast<std::uint32_t>(drawn.size()), drawn.data());
}

// Clicks.

void SystemTray::released(const xcb_button_release_event_t& event) {
    const bool inside = event.event_x >= 0 && event.event_y >= 0 && event.event_x < width_ &&
                        event.event_y < height_;
    if (!inside) return;
    const auto tell = event.detail == XCB_BUTTON_INDEX_1   ? onClick
                      : event.detail == XCB_BUTTON_INDEX_3 ? onRightClick
                                                           : nullptr;
    if (tell) tell();
}

}  // namespace quibbits::x11
