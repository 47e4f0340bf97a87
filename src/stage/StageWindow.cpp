#include "stage/StageWindow.h"

#include <algorithm>

namespace quibbits {

namespace {

constexpr double headroom = 60;       // art pixels between the ceiling and the top
constexpr double untouchableRim = 2;  // art pixels at the sprite's edges that let clicks through

}  // namespace

StageWindow::StageWindow(Panels& panels, const Computer& computer, const Screen& screen)
    : computer_(computer),
      panel_(panels.makePanel(
          {.frame = screen.frame, .level = PanelLevel::desktop, .acceptsDrops = true})) {
    installEvents();
    const auto observe = [this](Signal<>& signal, void (StageWindow::*then)()) {
        subscriptions_.push_back(signal.subscribe([this, then] { (this->*then)(); }));
    };
    observe(computer_.workspace.launched, &StageWindow::updateGround);
    observe(computer_.workspace.terminated, &StageWindow::updateGround);
    observe(computer_.screens.changed, &StageWindow::screenChanged);
    observe(computer_.fileBrowser.iconsRead, &StageWindow::takeIcons);
    observe(computer_.dock.changed, &StageWindow::updateGround);
    observe(computer_.workspace.activated, &StageWindow::updateRaised);
    observe(computer_.workspace.spaceChanged, &StageWindow::updateRaised);
    updateGround();
    updateRaised();
}

StageWindow::~StageWindow() = default;

void StageWindow::add(Pet& pet, double x) {
    const auto openMenu = [this, &pet] {
        computer_.runLoop.post(lifetime_.guard([this, &pet] { popUpMenu(pet); }));
    };
    pet.enter({.openSpots = lifetime_.guard([this] { return openSpots(); }),
               .isVisible = lifetime_.guard([this](Point at) { return isOpen(at); }),
               .frontWindow = lifetime_.guard([this] { return frontWindow(); }),
               .iconCenter = lifetime_.guard(
                   [this](const std::string& path) { return desktopIconCenter(path); }),
               .showMenu = lifetime_.guard(openMenu)},
              terrainFor(pet, ground_));
    {
        const Transaction still(pet.node().engine(), Transaction::withoutActions());
        pet.node().setPosition({x, pet.floorY(x)});
        panel_->root().addSublayer(pet.nodeRef());
    }
    pets_.push_back(&pet);
}

Terrain StageWindow::terrainFor(const Pet& pet, std::vector<Ground> ground) const {
    const Rect frame = panel_->frame();
    const double left = room_.lo + Pet::sideMargin;
    const auto screen = computer_.screens.main();
    const Rect visible = screen ? screen->visibleFrame : frame;
    const double skyline = visible.maxY() - frame.minY();
    return {.ground = std::move(ground),
            .iconsKnown = !computer_.fileBrowser.isReading(),
            .walkArea = {left, std::max(room_.hi - Pet::sideMargin, left)},
            .ceiling = skyline - headroom * pet.scale(),
            .skyline = skyline};
}

void StageWindow::popUpMenu(Pet& pet) {
    if (auto menu = pet.events().onMenu()) {
        panel_->popUp(std::move(*menu), {pet.position().x, pet.frame().maxY()});
    }
}

Rect StageWindow::mouseArea(const Pet& pet, double margin) const {
    return pet.frame().inset(untouchableRim * pet.scale() - margin);
}

Pet* StageWindow::visiblePet(Point at, double margin) const {
    for (auto it = pets_.rbegin(); it != pets_.rend(); ++it) {
        Pet& pet = **it;
        if (pet.node().model().hidden || !pet.isInteractive()) continue;
        if (!mouseArea(pet, margin).contains(at)) continue;
        // The window list is asked only now: it is a round trip to the desktop.
        return isOpen(at) ? &pet : nullptr;
    }
    return nullptr;
}

}  // namespace quibbits
