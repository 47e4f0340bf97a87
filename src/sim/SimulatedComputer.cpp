#include "sim/SimulatedComputer.h"

#include <algorithm>

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
}

void SimulatedDefaults::remove(std::string_view key) {
    const auto found = values_.find(key);
    if (found == values_.end()) return;
    values_.erase(found);
    if (onChange) onChange(std::string(key), nullptr);
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
    if (onSend) onSend(request);
    delivered.insert_or_assign(request.identifier, std::move(request));
    done({});
}

void SimulatedNotifications::removeDelivered(const std::string& identifier) {
    delivered.erase(identifier);
}

bool SimulatedFiles::moveToTrash(const std::string& path) {
    const bool moved = !stubborn.contains(path) && files.erase(path) > 0;
    if (moved) trash.push_back(path);
    if (onTrash) onTrash(path, moved);
    return moved;
}

SimulatedComputer::SimulatedComputer(Settings settings, Resources& resources, TextMeasure& text)
    : runLoop(settings.begin),
      random(settings.seed),
      pointer(runLoop),
      layers(runLoop, settings.seed),
      resources_(resources),
      text_(text),
      panels_(layers, screens, settings.painting) {
    setScreen({1440, 900}, 1);
}

SimulatedComputer::~SimulatedComputer() = default;

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
            .machine = machine,
            .notifications = notifications,
            .files = files,
            .resources = resources_,
            .text = text_};
}

void SimulatedComputer::updateVisibleFrame() {
    if (!screens.screen) return;
    Rect visible = screens.screen->frame;
    if (dock.frame) {
        const double top = dock.frame->maxY() - visible.y;
        visible.y += top;
        visible.height -= top;
    }
    screens.screen->visibleFrame = visible;
}

void SimulatedComputer::setScreen(Size size, double scale) {
    screens.screen = Screen{.frame = {0, 0, size.width, size.height}, .scale = scale};
    updateVisibleFrame();
    screens.changed.emit();
}

void SimulatedComputer::setDock(std::optional<Rect> frame) {
    dock.frame = frame;
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
    pointer.lastInput = pointer.lastMouse = runLoop.now();
    if (panels_.grabbing) {
        if (panels_.grabbing->onMouseDragged) panels_.grabbing->onMouseDragged();
    } else if (SimulatedPanel* panel = panelUnderPointer(); panel && !pointer.down.any()) {
        if (panel->onMouseMoved) panel->onMouseMoved();
    } else {
        pointer.elsewhere.emit(pointer.down.left ? PointerEvent::leftDragged : PointerEvent::moved);
    }
}

void SimulatedComputer::press(MouseButton button) {
    pointer.lastInput = pointer.lastMouse = runLoop.now();
    SimulatedPanel* panel = panelUnderPointer();
    if (button == MouseButton::left) {
        pointer.down.left = true;
        if (!panel) {
            pressesBeneath.push_back(pointer.place);
        } else {
            panels_.grabbing = panel;
            if (panel->onMouseDown) panel->onMouseDown();
        }
    } else if (button == MouseButton::right) {
        pointer.down.right = true;
        if (!panel)
            pressesBeneath.push_back(pointer.place);
        else if (panel->onRightMouseDown)
            panel->onRightMouseDown();
    } else {
        pointer.down.middle = true;
    }
}

void SimulatedComputer::release(MouseButton button) {
    pointer.lastInput = pointer.lastMouse = runLoop.now();
    if (button == MouseButton::right) pointer.down.right = false;
    if (button == MouseButton::middle) pointer.down.middle = false;
    if (button != MouseButton::left) return;
    pointer.down.left = false;
    if (SimulatedPanel* panel = std::exchange(panels_.grabbing, nullptr)) {
        if (panel->onMouseUp) panel->onMouseUp();
    } else {
        pointer.elsewhere.emit(PointerEvent::leftUp);
    }
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

bool SimulatedComputer::dropOnStage(DragInfo drag) {
    const auto& open = panels_.open();
    for (auto it = open.rbegin(); it != open.rend(); ++it) {
        SimulatedPanel& panel = **it;
        if (!panel.acceptsDrops() || !panel.isVisible()) continue;
        DragInfo here = drag;
        here.location = drag.location - Vector{panel.frame().x, panel.frame().y};
        if (panel.onDragOver && panel.onDragOver(here)) return panel.onDrop && panel.onDrop(here);
    }
    return false;
}

}  // namespace quibbits
