#pragma once
// The one see-through panel that covers the screen and holds every creature. It lets the mouse
// through everywhere but on a creature, carries creatures by the mouse, hands drops on, knows what
// they can walk on, and stands over or behind the windows. Built once at launch by AppDelegate.

#include <memory>
#include <optional>
#include <vector>

#include "body/Pet.h"
#include "layers/Panel.h"
#include "platform/Computer.h"

namespace quibbits {

class StageWindow {
public:
    StageWindow(Panels& panels, const Computer& computer, const Screen& screen);
    ~StageWindow();
    StageWindow(const StageWindow&) = delete;
    StageWindow& operator=(const StageWindow&) = delete;

    void orderFront() { panel_->orderFront(); }
    /// Puts a creature on the stage, standing on the floor at an x. The pet outlives the stage.
    void add(Pet& pet, double x);
    /// An item is dragged from the dial: its place in global coordinates, or none at the end.
    void itemDragMoved(std::optional<Point> at);

    /// The topmost creature at a point. A positive margin reaches beyond the sprite; without one
    /// the sprite's outermost 2 art pixels do not count.
    Pet* visiblePet(Point at, double margin) const;

    bool isRaised() const { return raised_; }
    Rect frame() const { return panel_->frame(); }
    const std::vector<Ground>& ground() const { return ground_; }
    const std::vector<Ground>& icons() const { return icons_; }
    Pet* held() const { return held_ ? held_->pet : nullptr; }

private:
    struct Carry {
        Pet* pet = nullptr;
        Vector grab;  // from the pointer to the foot point
    };

    // Mouse and drops (StageMouse.cpp).
    void installEvents();
    Point pointerOnStage() const;
    void cursorMoved();
    void mouseDown();
    void mouseDragged();
    void mouseUp();
    void rightMouseDown();
    Pet* dropTarget(const DragInfo& drag) const;
    bool drop(const DragInfo& drag);
    void takeMouseOver(const Pet* pet);
    Rect mouseArea(const Pet& pet, double margin) const;
    std::vector<Rect> mouseAreas() const;
    void popUpMenu(Pet& pet);

    // What can be walked on (GroundModel.cpp).
    void screenChanged();
    void updateGround();
    void handOutGround();
    /// How far a creature may go to the sides and up.
    Terrain terrainFor(const Pet& pet, std::vector<Ground> ground) const;
    std::optional<Rect> estimatedDock(const Screen& screen) const;
    double estimatedDockWidth(const DockPreferences& preferences) const;
    std::optional<Point> desktopIconCenter(const std::string& path) const;
    void refreshIcons();
    void takeIcons();
    std::vector<Rect> appWindows() const;
    std::vector<Ground> openSpots();
    bool isOpen(Point at) const;
    std::optional<Rect> frontWindow() const;

    // Over or behind the windows (Raising.cpp).
    void updateRaised();
    bool shouldBeRaised() const;
    bool fillsScreen(std::int64_t process) const;
    bool watchesVideo(const Application& front) const;

    const Computer computer_;
    std::unique_ptr<Panel> panel_;
    std::vector<Pet*> pets_;  // the last is topmost
    std::optional<Carry> held_;
    bool ignoresMouse_ = true;
    double mouseReach_ = 0;  // beyond the sprites, while an item is dragged

    std::vector<Ground> ground_;  // base rows
    Range room_;                  // between panels along the sides
    std::vector<Ground> icons_;
    std::optional<Instant> iconsRead_;
    bool iconsAllowed_ = true;

    bool raised_ = false;
    Timer raisedCheck_;

    std::vector<Subscription> subscriptions_;
    Lifetime lifetime_;
};

}  // namespace quibbits
