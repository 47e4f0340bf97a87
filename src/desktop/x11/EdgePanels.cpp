#include "desktop/x11/EdgePanels.h"

#include <xcb/shape.h>

#include <algorithm>
#include <string>

#include "desktop/x11/Properties.h"
#include "desktop/x11/WindowManager.h"

namespace quibbits::x11 {
namespace {

constexpr int i3Depth = 3;                // levels of its windows around a dock
constexpr std::uint32_t widest = 0xffff;  // pixels; no display is larger
constexpr std::uint32_t mostWorkspaces = 64;

int pixels(std::uint32_t told) {
    return static_cast<int>(std::min(told, widest));
}

EdgePanel::Strut strutOf(const Property& partial, const Property& plain) {
    auto told = partial.numbers();
    if (told.size() < 4) told = plain.numbers();
    if (told.size() < 4) return {};
    EdgePanel::Strut strut{pixels(told[0]), pixels(told[1]), pixels(told[2]), pixels(told[3]), {}};
    if (told.size() >= 12) {
        for (std::size_t i = 0; i < strut.spans.size(); ++i) strut.spans[i] = pixels(told[4 + i]);
    }
    return strut;
}

}  // namespace

EdgePanels::EdgePanels(Connection& connection, std::function<void()> changed)
    : connection_(connection), changed_(std::move(changed)) {
    const auto ofPanel = [this](xcb_window_t window) {
        if (isWatched(window)) changed_();
    };
    const auto on = [this](int type, auto handler) {
        subscriptions_.push_back(connection_.listen(type, handler));
    };
    on(XCB_CONFIGURE_NOTIFY, [=](const auto& e) {
        ofPanel(reinterpret_cast<const xcb_configure_notify_event_t&>(e).window);
    });
    on(XCB_MAP_NOTIFY,
       [=](const auto& e) { ofPanel(reinterpret_cast<const xcb_map_notify_event_t&>(e).window); });
    on(XCB_UNMAP_NOTIFY, [=](const auto& e) {
        ofPanel(reinterpret_cast<const xcb_unmap_notify_event_t&>(e).window);
    });
    on(XCB_DESTROY_NOTIFY, [=, this](const auto& e) {
        const auto window = reinterpret_cast<const xcb_destroy_notify_event_t&>(e).window;
        ofPanel(window);
        std::erase(watched_, window);
    });
    on(XCB_PROPERTY_NOTIFY, [=, this](const auto& e) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(e);
        if (change.atom == connection_.atom(Atom::strutPartial) ||
            change.atom == connection_.atom(Atom::strut)) {
            ofPanel(change.window);
        }
    });
    if (connection.shape) {
        on(connection.shape->firstEvent + XCB_SHAPE_NOTIFY, [=](const auto& e) {
            ofPanel(reinterpret_cast<const xcb_shape_notify_event_t&>(e).affected_window);
        });
    }
    subscriptions_.push_back(connection.rootPropertyChanged.subscribe([this](xcb_atom_t name) {
        if (std::ranges::find(workAreaNames_, name) != workAreaNames_.end()) changed_();
    }));
}

bool EdgePanels::isWatched(xcb_window_t window) const {
    return std::ranges::find(watched_, window) != watched_.end();
}

/// The panels of this program hear their own events.
bool EdgePanels::isOwn(xcb_window_t window) const {
    const auto* setup = xcb_get_setup(connection_.xcb());
    return (window & ~setup->resource_id_mask) == setup->resource_id_base;
}

void EdgePanels::watch(xcb_window_t window) {
    if (isWatched(window)) return;
    watched_.push_back(window);
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_.xcb(), window, XCB_CW_EVENT_MASK, &mask);
    if (connection_.shape) xcb_shape_select_input(connection_.xcb(), window, 1);
}

/// The windows on screen inside a window, so many levels down.
std::vector<xcb_window_t> EdgePanels::shownUnder(xcb_window_t top, int depth) const {
    auto* xcb = connection_.xcb();
    std::vector<xcb_window_t> all;
    std::vector<xcb_window_t> level{top};
    for (; depth > 0; --depth) {
        std::vector<xcb_query_tree_cookie_t> asked;
        for (const auto window : level) asked.push_back(xcb_query_tree(xcb, window));
        std::vector<std::pair<xcb_window_t, xcb_get_window_attributes_cookie_t>> inside;
        for (const auto& cookie : asked) {
            const auto tree = reply(xcb, xcb_query_tree_reply, cookie);
            if (!tree) continue;
            const auto* children = xcb_query_tree_children(tree.get());
            for (int i = 0; i < tree->children_len; ++i) {
                inside.emplace_back(children[i], xcb_get_window_attributes(xcb, children[i]));
            }
        }
        level.clear();
        for (const auto& [window, cookie] : inside) {
            const auto attributes = reply(xcb, xcb_get_window_attributes_reply, cookie);
            if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
                attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT) {
                level.push_back(window);
            }
        }
        all.insert(all.end(), level.begin(), level.end());
    }
    return all;
}

/// Some window managers list no panels among their clients.
std::vector<xcb_window_t> EdgePanels::candidates() const {
    auto all = shownUnder(connection_.root(), isI3(connection_) ? i3Depth : 1);
    const auto list = propertyOf(connection_, connection_.root(), Atom::clientList);
    all.insert(all.end(), list.numbers().begin(), list.numbers().end());
    all.insert(all.end(), watched_.begin(), watched_.end());
    std::erase_if(all, [this](xcb_window_t window) { return isOwn(window); });
    std::ranges::sort(all);
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

std::vector<EdgePanel> EdgePanels::read() {
    auto* xcb = connection_.xcb();
    const auto property = [this](xcb_window_t window, Atom name) {
        return PropertyRequest(connection_, window, connection_.atom(name));
    };
    std::vector<std::pair<xcb_window_t, PropertyRequest>> types;
    for (const auto window : candidates()) {
        types.emplace_back(window, property(window, Atom::windowType));
    }
    struct Asked {
        PropertyRequest strutPartial, strut;
        xcb_get_geometry_cookie_t geometry;
        xcb_translate_coordinates_cookie_t place;
        xcb_get_window_attributes_cookie_t attributes;
        xcb_shape_get_rectangles_cookie_t solid;
    };
    std::vector<Asked> asked;
    for (const auto& [window, type] : types) {
        if (!type.wait().contains(connection_.atom(Atom::typeDock))) continue;
        watch(window);  // before it is read: what changes after that is told
        asked.push_back({property(window, Atom::strutPartial), property(window, Atom::strut),
                         xcb_get_geometry(xcb, window),
                         xcb_translate_coordinates(xcb, window, connection_.root(), 0, 0),
                         xcb_get_window_attributes(xcb, window),
                         connection_.shape
                             ? xcb_shape_get_rectangles(xcb, window, XCB_SHAPE_SK_INPUT)
                             : xcb_shape_get_rectangles_cookie_t{}});
    }
    std::vector<EdgePanel> found;
    for (const auto& one : asked) {
        const auto strut = strutOf(one.strutPartial.wait(), one.strut.wait());
        const auto geometry = reply(xcb, xcb_get_geometry_reply, one.geometry);
        const auto place = reply(xcb, xcb_translate_coordinates_reply, one.place);
        const auto attributes = reply(xcb, xcb_get_window_attributes_reply, one.attributes);
        const PixelRect frame = geometry && place ? PixelRect{place->dst_x, place->dst_y,
                                                              geometry->width, geometry->height}
                                                  : PixelRect{};
        const auto solid = solidPart(frame, one.solid);
        if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE) continue;
        if (!frame.isEmpty()) found.push_back({frame, solid.value_or(frame), strut});
    }
    return found;
}

/// The smallest rectangle around what takes the mouse; nothing when nobody tells.
std::optional<PixelRect> EdgePanels::solidPart(const PixelRect& frame,
                                               xcb_shape_get_rectangles_cookie_t asked) const {
    if (!connection_.shape) return std::nullopt;
    const auto answer = reply(connection_.xcb(), xcb_shape_get_rectangles_reply, asked);
    if (!answer) return std::nullopt;
    const auto* parts = xcb_shape_get_rectangles_rectangles(answer.get());
    PixelRect around;
    for (int i = 0; i < xcb_shape_get_rectangles_rectangles_length(answer.get()); ++i) {
        around = around.united(
            {frame.x + parts[i].x, frame.y + parts[i].y, parts[i].width, parts[i].height});
    }
    return around.intersected(frame);
}

std::optional<PixelRect> EdgePanels::workArea(PixelRect monitor, std::size_t monitors) {
    const auto workspace =
        propertyOf(connection_, connection_.root(), Atom::currentDesktop).number().value_or(0);
    if (workspace >= mostWorkspaces) return std::nullopt;
    for (auto next = workAreaNames_.size(); next <= workspace; ++next) {
        const std::string name = "_GTK_WORKAREAS_D" + std::to_string(next);
        const auto answer =
            reply(connection_.xcb(), xcb_intern_atom_reply,
                  xcb_intern_atom(connection_.xcb(), 0, static_cast<std::uint16_t>(name.size()),
                                  name.data()));
        workAreaNames_.push_back(answer ? answer->atom : XCB_NONE);
    }
    const auto rectangle = [](std::span<const std::uint32_t> four) {
        return PixelRect{pixels(four[0]), pixels(four[1]), pixels(four[2]), pixels(four[3])};
    };
    const auto ofEach =
        PropertyRequest(connection_, connection_.root(), workAreaNames_[workspace]).wait();
    for (auto rest = ofEach.numbers(); rest.size() >= 4; rest = rest.subspan(4)) {
        const PixelRect free = rectangle(rest);
        if (!free.isEmpty() && free.intersected(monitor) == free) return free;
    }
    if (monitors > 1 || ofEach.numbers().size() >= 4) return std::nullopt;
    const auto ofAll = propertyOf(connection_, connection_.root(), Atom::workArea);
    const auto four = ofAll.numbers();
    const std::size_t at = 4 * static_cast<std::size_t>(workspace);
    if (four.size() < 4) return std::nullopt;
    return rectangle(four.subspan(at + 4 <= four.size() ? at : 0, 4));
}

}  // namespace quibbits::x11
