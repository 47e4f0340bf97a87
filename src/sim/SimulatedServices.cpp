// The smaller parts of a simulated computer: what it remembers, shows and is told.

#include <algorithm>

#include "sim/SimulatedComputer.h"

namespace quibbits {

std::optional<DefaultsValue> SimulatedDefaults::stored(std::string_view key) const {
    const auto found = values_.find(key);
    if (found == values_.end()) return std::nullopt;
    return found->second;
}

std::optional<DefaultsValue> SimulatedDefaults::object(std::string_view key) const {
    if (auto value = stored(key)) return value;
    const auto found = registered_.find(key);
    if (found == registered_.end()) return std::nullopt;
    return found->second;
}

void SimulatedDefaults::set(std::string_view key, DefaultsValue value) {
    const auto found = values_.find(key);
    if (found != values_.end() && found->second == value) return;
    const auto entry = values_.insert_or_assign(std::string(key), std::move(value)).first;
    if (onChange) onChange(entry->first, &entry->second);
    changed_.emit();
}

void SimulatedDefaults::remove(std::string_view key) {
    const auto found = values_.find(key);
    if (found == values_.end()) return;
    values_.erase(found);
    if (onChange) onChange(std::string(key), nullptr);
    changed_.emit();
}

void SimulatedDefaults::registerDefaults(std::map<std::string, DefaultsValue> values) {
    for (auto& [key, value] : values) registered_.insert_or_assign(key, std::move(value));
}

std::vector<WindowInfo> SimulatedWindows::onScreen() const {
    std::vector<WindowInfo> list;
    for (const Window& window : windows) list.push_back(window.info);
    return list;
}

void SimulatedNotifications::send(NotificationRequest request,
                                  std::function<void(const NotificationOutcome&)> done) {
    if (!refusal.empty()) return done({NotificationOutcome::Kind::notAllowed, refusal});
    const auto* offer = offerOf(request);
    const bool isMute = offer && !showsButtons;
    if (isMute) request.body = bodyWithoutButtons(request, *offer);
    if (onSend) onSend(request);
    known_.insert(request.identifier);
    const NotificationResponse end{NotificationResponse::closed, request.pet, request.paths};
    delivered.insert_or_assign(request.identifier, std::move(request));
    if (done) done({});
    if (isMute && onResponse) onResponse(end);
}

void SimulatedNotifications::removeDelivered(const std::string& identifier) {
    if (!known_.erase(identifier)) return;
    delivered.erase(identifier);
    if (onRemove) onRemove(identifier);
}

void SimulatedNotifications::removeOffers() {
    const auto shown = delivered;
    for (const auto& [identifier, request] : shown) {
        if (offerOf(request) && showsButtons) removeDelivered(identifier);
    }
}

void SimulatedNotifications::answer(const std::string& identifier, const std::string& action) {
    const auto shown = delivered.find(identifier);
    if (shown == delivered.end() || !known_.contains(identifier) || !onResponse) return;
    const auto request = shown->second;
    onResponse({action, request.pet, request.paths});
}

/// The category of a request that has buttons.
const NotificationCategory* SimulatedNotifications::offerOf(
    const NotificationRequest& request) const {
    const auto found = std::ranges::find(
        categories, request.category, [](const NotificationCategory& c) { return c.identifier; });
    return found == categories.end() || found->actions.empty() ? nullptr : &*found;
}

std::optional<bool> SimulatedSession::has(SessionService service) const {
    const auto known = services.find(service);
    return known == services.end() ? std::nullopt : std::optional(known->second);
}

void SimulatedStatusItem::show(Image picture, std::string text) {
    image = std::move(picture);
    toolTip = std::move(text);
}

void SimulatedStatusItem::popUp(Menu menu) {
    openMenu = std::move(menu);
    if (onPopUp) onPopUp(*openMenu);
}

void SimulatedPointer::touch() {
    lastInput = lastMouse = loop_.now();
    touched.emit();
}

PointerPicture SimulatedPointer::picture() const {
    // A plain arrow: white with a dark edge.
    constexpr int width = 9, height = 14;
    std::vector<Argb> pixels(static_cast<std::size_t>(width) * height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x <= std::min(y, width - 1) && x + y < height + 2; ++x) {
            const bool edge = x == 0 || x == y || x + y == height + 1 || y == height - 1;
            pixels[static_cast<std::size_t>(y * width + x)] = edge ? 0xff202020u : 0xffffffffu;
        }
    }
    return {Image::fromArgb(width, height, std::move(pixels)), {width, height}, {0, 0}};
}

std::optional<Rect> SimulatedStatusItem::frame() const {
    if (place) return place;
    const auto screen = screens_.main();
    if (!screen) return std::nullopt;
    constexpr double side = 24;
    constexpr double fromRight = 160;  // other icons and the clock
    return Rect{screen->frame.maxX() - fromRight, screen->frame.maxY() - side, side, side};
}

std::optional<Point> SimulatedFileBrowser::desktopPosition(const std::string& name) {
    const auto found = positions.find(name);
    return found == positions.end() ? std::nullopt : std::optional(found->second);
}

void SimulatedVolumes::mount(const std::string& image, const std::string& place) {
    if (mounts) mounts->insert_or_assign(place, image);
    mounted.emit();
}

void SimulatedVolumes::unmount(const std::string& place) {
    if (mounts) mounts->erase(place);
    unmounted.emit(place);
}

std::optional<Subscription> SimulatedHotKeys::hold(HotKey key, std::function<void()> pressed) {
    if (taken) return std::nullopt;
    auto holder = std::make_shared<Holder>(Holder{key, std::move(pressed)});
    holders_.push_back(holder);
    ++held;
    return Subscription([this, holder] {
        std::erase(holders_, holder);
        --held;
    });
}

bool SimulatedHotKeys::press(const HotKey& key) {
    const auto holder =
        std::ranges::find_if(holders_, [&](const auto& each) { return each->key == key; });
    if (holder == holders_.end()) return false;
    (*holder)->pressed();
    return true;
}

}  // namespace quibbits
