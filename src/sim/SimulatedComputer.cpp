#include "sim/SimulatedComputer.h"

#include <algorithm>
#include <filesystem>

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

std::string SimulatedFiles::fingerprint(const std::string& path) const {
    if (!files.contains(path)) return {};
    const auto known = details.find(path);
    const Details told = known == details.end() ? Details{} : known->second;
    return std::to_string(told.size) + " " + told.contents;
}

bool SimulatedFiles::moveToTrash(const std::string& path) {
    const bool moved = !stubborn.contains(path) && files.erase(path) > 0;
    if (moved) {
        details.erase(path);
        trash.push_back(path);
        tell(path);
    }
    if (onTrash) onTrash(path, moved);
    return moved;
}

std::optional<std::vector<FolderEntry>> SimulatedFiles::list(const std::string& folder) const {
    if (unreadable.contains(folder)) return std::nullopt;
    std::vector<FolderEntry> entries;
    for (const std::string& path : files) {
        const std::filesystem::path file(path);
        const std::string name = file.filename();
        if (file.parent_path() != folder || name.starts_with('.')) continue;
        FolderEntry entry{.name = name};
        if (!unreadable.contains(path)) {
            const auto known = details.find(path);
            const Details told = known == details.end() ? Details{} : known->second;
            entry.isRegularFile = true;
            entry.size = told.size;
            entry.created = told.created;
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

bool SimulatedFiles::contentsEqual(const std::string& one, const std::string& other,
                                   std::stop_token) const {
    ++comparisons;
    const auto readable = [this](const std::string& path) {
        return files.contains(path) && !unreadable.contains(path);
    };
    const auto bytes = [this](const std::string& path) {
        const auto known = details.find(path);
        return known == details.end() ? Details{}
                                      : Details{known->second.size, known->second.contents};
    };
    return readable(one) && readable(other) && bytes(one) == bytes(other);
}

std::optional<Subscription> SimulatedFiles::watch(
    const std::string& folder, std::function<void(const std::string& name)> changed) {
    if (unreadable.contains(folder)) return std::nullopt;
    return watched_[folder].subscribe(std::move(changed));
}

void SimulatedFiles::put(const std::string& path, Details told) {
    files.insert(path);
    details.insert_or_assign(path, std::move(told));
    tell(path);
}

void SimulatedFiles::tell(const std::string& path) {
    const std::filesystem::path file(path);
    const auto watchers = watched_.find(file.parent_path());
    if (watchers != watched_.end()) watchers->second.emit(file.filename().native());
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

namespace {

/// A listener is a copy here, as on a real display: it may end the panel that it is set on.
void tell(std::function<void()> listener) {
    if (listener) listener();
}
bool ask(std::function<bool(const DragInfo&)> listener, const DragInfo& drag) {
    return listener && listener(drag);
}

/// A drag in global coordinates, as a panel is told of it.
DragInfo within(DragInfo drag, Rect frame) {
    drag.location = drag.location - Vector{frame.x, frame.y};
    return drag;
}

}  // namespace

SimulatedComputer::SimulatedComputer(Settings settings, Resources& resources, TextMeasure& text)
    : runLoop(settings.begin),
      random(settings.seed),
      statusItem(screens),
      background(runLoop),
      pointer(runLoop),
      layers(runLoop, settings.seed),
      resources_(resources),
      text_(text),
      panels_(layers, screens, settings.painting) {
    setScreen({1440, 900}, 1);
}

SimulatedComputer::~SimulatedComputer() {
    runLoop.dropJobs();  // they hold layers, which end before their engine
}

Computer SimulatedComputer::computer() {
    return {.runLoop = runLoop,
            .random = random,
            .defaults = defaults,
            .screens = screens,
            .pointer = pointer,
            .workspace = workspace,
            .windows = windows,
            .dock = dock,
            .fileBrowser = fileBrowser,
            .accessibility = accessibility,
            .machine = machine,
            .notifications = notifications,
            .statusItem = statusItem,
            .appearance = appearance,
            .session = session,
            .files = files,
            .volumes = volumes,
            .background = background,
            .hotKeys = hotKeys,
            .keyboard = keyboard,
            .resources = resources_,
            .text = text_};
}

void SimulatedComputer::updateVisibleFrame() {
    if (!screens.screen) return;
    const Rect frame = screens.screen->frame;
    double left = frame.minX(), right = frame.maxX(), low = frame.minY(), high = frame.maxY();
    auto panels = dock.frames;
    if (dock.inset) panels.push_back(*dock.inset);
    for (const Rect& panel : panels) {
        const bool lies = panel.width >= panel.height;
        if (lies && panel.minY() < frame.midY()) low = std::max(low, panel.maxY());
        if (lies && panel.minY() >= frame.midY()) high = std::min(high, panel.minY());
        if (!lies && panel.minX() < frame.midX()) left = std::max(left, panel.maxX());
        if (!lies && panel.minX() >= frame.midX()) right = std::min(right, panel.minX());
    }
    const Rect visible{left, low, right - left, high - low};
    screens.screen->visibleFrame = visible;
}

void SimulatedComputer::setScreen(Size size, double scale) {
    screens.screen = Screen{.frame = {0, 0, size.width, size.height}, .scale = scale};
    updateVisibleFrame();
    screens.changed.emit();
}

void SimulatedComputer::setDock(std::optional<Rect> frame) {
    setPanels(frame ? std::vector{*frame} : std::vector<Rect>{});
}

void SimulatedComputer::setPanels(std::vector<Rect> frames) {
    dock.frames = std::move(frames);
    updateVisibleFrame();
    dock.changed.emit();
}

SimulatedPanel* SimulatedComputer::panelUnderPointer() const {
    const auto& open = panels_.open();
    const auto found = std::ranges::find_if(open.rbegin(), open.rend(), [this](const auto* panel) {
        return panel->takesMouseAt(pointer.place);
    });
    return found == open.rend() ? nullptr : *found;
}

void SimulatedComputer::movePointer(Point to) {
    pointer.place = to;
    pointer.touch();
    if (panels_.carried) {
        const ItemDrag drag = *panels_.carried;
        if (drag.onMove) drag.onMove(to);
        panelTaking({.location = to, .item = drag.item});
    } else if (panels_.grabbing) {
        tell(panels_.grabbing->onMouseDragged);
    } else if (SimulatedPanel* panel = panelUnderPointer(); panel && !pointer.down.any()) {
        tell(panel->onMouseMoved);
    } else {
        pointer.elsewhere.emit(pointer.down.left ? PointerEvent::leftDragged : PointerEvent::moved);
    }
}

void SimulatedComputer::press(MouseButton button) {
    pointer.touch();
    for (std::optional<Menu>* menu : menus()) menu->reset();
    SimulatedPanel* panel = panelUnderPointer();
    if (button == MouseButton::left) {
        pointer.down.left = true;
        if (!panel) {
            pressesBeneath.push_back(pointer.place);
            pointer.elsewhere.emit(PointerEvent::leftDown);
        } else {
            panels_.grabbing = panel;
            tell(panel->onMouseDown);
        }
    } else if (button == MouseButton::right) {
        pointer.down.right = true;
        if (!panel) {
            pressesBeneath.push_back(pointer.place);
            pointer.elsewhere.emit(PointerEvent::rightDown);
        } else {
            tell(panel->onRightMouseDown);
        }
    } else {
        pointer.down.middle = true;
    }
}

void SimulatedComputer::release(MouseButton button) {
    pointer.touch();
    if (button == MouseButton::right) pointer.down.right = false;
    if (button == MouseButton::middle) pointer.down.middle = false;
    if (button != MouseButton::left) return;
    pointer.down.left = false;
    if (const auto carried = std::exchange(panels_.carried, std::nullopt)) {
        panels_.grabbing = nullptr;
        dropOnStage({.location = pointer.place, .item = carried->item});
        if (carried->onEnd) carried->onEnd();
    } else if (SimulatedPanel* panel = std::exchange(panels_.grabbing, nullptr)) {
        tell(panel->onMouseUp);
    } else {
        pointer.elsewhere.emit(PointerEvent::leftUp);
    }
}

void SimulatedComputer::clickStatusItem(MouseButton button) {
    if (const auto icon = statusItem.frame()) movePointer(icon->center());
    press(button);
    release(button);
    tell(button == MouseButton::right ? statusItem.onRightClick : statusItem.onClick);
}

std::vector<std::optional<Menu>*> SimulatedComputer::menus() {
    std::vector<std::optional<Menu>*> all{&statusItem.openMenu};
    for (SimulatedPanel* panel : panels_.open()) all.push_back(&panel->openMenu);
    return all;
}

bool SimulatedComputer::choose(const std::string& title) {
    for (std::optional<Menu>* menu : menus()) {
        if (!*menu) continue;
        const auto line = std::ranges::find(menu->value().items, title, &MenuItem::title);
        if (line == menu->value().items.end() || !line->run) continue;
        const auto run = line->run;
        menu->reset();
        run();
        return true;
    }
    return false;
}

void SimulatedComputer::setUserPresent(bool present) {
    pointer.present = present;
    pointer.lastInput = runLoop.now();
}

void SimulatedComputer::setBattery(std::optional<int> level, bool charging) {
    machine.sources.clear();
    if (level) {
        machine.sources.push_back({.currentCapacity = *level,
                                   .maxCapacity = 100,
                                   .state = charging ? "AC Power" : "Battery Power"});
    }
    machine.powerChanged.emit();
}

void SimulatedComputer::setHeat(ThermalState state) {
    machine.heat = state;
    machine.thermalStateChanged.emit();
}

void SimulatedComputer::setCameras(std::vector<bool> inUse) {
    machine.cameras = std::move(inUse);
    machine.camerasChanged.emit();
}

void SimulatedComputer::select(std::vector<std::string> paths,
                               const std::vector<DesktopIcon>& drawn) {
    AccessibleWindow window{.elements = {{.title = "files"}}};
    for (const DesktopIcon& icon : drawn) {
        window.elements[0].selectedChildren.push_back(window.elements.size());
        window.elements[0].children.push_back(window.elements.size());
        window.elements.push_back({.title = icon.name, .frame = icon.frame});
    }
    fileBrowser.selection = {.paths = std::move(paths), .window = std::move(window)};
}

void SimulatedComputer::putWindow(const std::string& id, WindowInfo info) {
    auto& all = windows.windows;
    const auto found = std::ranges::find(all, id, &SimulatedWindows::Window::id);
    if (found != all.end())
        found->info = info;
    else
        all.insert(all.begin(), {id, info});
}

void SimulatedComputer::closeWindow(const std::string& id) {
    std::erase_if(windows.windows, [&](const auto& window) { return window.id == id; });
}

void SimulatedComputer::bringToFront(const Application& application) {
    workspace.front = application;
    auto& all = windows.windows;
    std::stable_partition(all.begin(), all.end(), [&](const auto& window) {
        return window.info.process == application.process;
    });
    workspace.activated.emit();
}

SimulatedPanel* SimulatedComputer::panelTaking(const DragInfo& drag) const {
    const auto& open = panels_.open();
    for (auto it = open.rbegin(); it != open.rend(); ++it) {
        SimulatedPanel& panel = **it;
        if (!panel.acceptsDrops() || !panel.isVisible()) continue;
        if (ask(panel.onDragOver, within(drag, panel.frame()))) return &panel;
    }
    return nullptr;
}

bool SimulatedComputer::dropOnStage(DragInfo drag) {
    const SimulatedPanel* panel = panelTaking(drag);
    return panel && ask(panel->onDrop, within(drag, panel->frame()));
}

}  // namespace quibbits
