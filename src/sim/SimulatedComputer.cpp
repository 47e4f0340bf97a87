#include "sim/SimulatedComputer.h"

#include <algorithm>

namespace quibbits {

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
