// How the mouse, dragged files and dragged items reach a creature. The panel lets the mouse through
// by default; only while the pointer is over a creature does the panel take it.

#include <algorithm>

#include "settings/model/Setting.h"
#include "stage/StageWindow.h"

namespace quibbits {

namespace {

constexpr double itemReach = 40;    // points around a sprite that count as on it for an item
constexpr double itemNotice = 250;  // points within which a creature notices a dragged item

}  // namespace

void StageWindow::installEvents() {
    panel_->mouseAreas = [this] { return mouseAreas(); };
    panel_->onMouseMoved = [this] { cursorMoved(); };
    panel_->onMouseDown = [this] { mouseDown(); };
    panel_->onMouseDragged = [this] { mouseDragged(); };
    panel_->onMouseUp = [this] { mouseUp(); };
    panel_->onRightMouseDown = [this] { rightMouseDown(); };
    panel_->onDragOver = [this](const DragInfo& drag) { return dropTarget(drag) != nullptr; };
    panel_->onDrop = [this](const DragInfo& drag) { return drop(drag); };
    subscriptions_.push_back(computer_.pointer.elsewhere.subscribe([this](PointerEvent event) {
        switch (event) {
            case PointerEvent::moved:
            case PointerEvent::leftDragged: cursorMoved(); break;
            case PointerEvent::leftUp: mouseUp(); break;
            case PointerEvent::leftDown:
            case PointerEvent::rightDown: break;
        }
    }));
}

Point StageWindow::pointerOnStage() const {
    const Rect frame = panel_->frame();
    return computer_.pointer.location() - Vector{frame.x, frame.y};
}

void StageWindow::takeMouseOver(const Pet* pet) {
    const bool ignores = pet == nullptr;
    if (ignores == ignoresMouse_) return;
    ignoresMouse_ = ignores;
    panel_->setIgnoresMouse(ignores);
}

std::vector<Rect> StageWindow::mouseAreas() const {
    std::vector<Rect> areas;
    for (const Pet* pet : pets_) {
        if (!pet->node().model().hidden && pet->isInteractive()) {
            areas.push_back(mouseArea(*pet, mouseReach_));
        }
    }
    return areas;
}

void StageWindow::cursorMoved() {
    if (held_) {
        if (!computer_.pointer.buttons().left) mouseUp();
        if (held_) return;
    }
    const Point at = pointerOnStage();
    Pet* pet = visiblePet(at, 0);
    mouseReach_ = 0;
    takeMouseOver(pet);
    if (computer_.pointer.buttons().any()) return;
    if (pet) pet->events().onHover(at);
    for (Pet* each : pets_) {
        each->events().onCursor(at);
    }
}

void StageWindow::mouseDown() {
    if (held_) mouseUp();  // its own release never came
    const Point at = pointerOnStage();
    Pet* pet = visiblePet(at, 0);
    if (!pet) {
        takeMouseOver(nullptr);
        return;
    }
    held_ = Carry{pet, pet->position() - at};
    pet->events().onPickUp();
}

void StageWindow::mouseDragged() {
    if (!held_) return;
    if (!computer_.pointer.buttons().left) {
        mouseUp();
        return;
    }
    const Point target = pointerOnStage() + held_->grab;
    Pet& pet = *held_->pet;
    pet.drag({target.x, std::max(pet.floorY(target.x), target.y)});
}

void StageWindow::mouseUp() {
    if (!held_) return;
    Pet& pet = *held_->pet;
    held_.reset();
    pet.events().onDrop();
    cursorMoved();
}

void StageWindow::rightMouseDown() {
    const Point at = pointerOnStage();
    Pet* pet = visiblePet(at, 0);
    if (!pet) return;
    if (auto menu = pet->events().onMenu()) panel_->popUp(std::move(*menu), at);
}

Pet* StageWindow::dropTarget(const DragInfo& drag) const {
    if (drag.item) {
        Pet* pet = visiblePet(drag.location, itemReach);
        return pet && pet->events().takesItems() ? pet : nullptr;
    }
    const bool meant =
        computer_.pointer.modifiers().option && isOn(computer_.defaults, Setting::thunderbolt);
    Pet* pet = meant ? visiblePet(drag.location, 0) : nullptr;
    return pet && pet->events().takesFiles() ? pet : nullptr;
}

bool StageWindow::drop(const DragInfo& drag) {
    Pet* pet = dropTarget(drag);
    if (!pet) return false;
    if (const auto item = drag.item ? itemNamed(*drag.item) : std::nullopt) {
        pet->events().onItem(*item);
    } else if (!drag.files.empty()) {
        pet->events().onZap(drag.files);
    }
    return true;
}

void StageWindow::itemDragMoved(std::optional<Point> at) {
    if (!at) {
        cursorMoved();
        return;
    }
    const Rect frame = panel_->frame();
    const Point here = *at - Vector{frame.x, frame.y};
    Pet* pet = visiblePet(here, itemReach);
    mouseReach_ = itemReach;
    takeMouseOver(pet);
    for (Pet* each : pets_) {
        if (distance(each->position(), here) < itemNotice) {
            each->events().onItemNear(here);
        }
    }
}

}  // namespace quibbits
