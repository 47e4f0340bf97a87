#pragma once
// The program's presence in the tray: an icon with a small ball that opens a dark half wheel with
// the party, or a menu. The panel exists only while it is open. Owned by AppDelegate, which gives
// it the party and what to do; it knows no creature.

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "dial/DialView.h"
#include "layers/Panel.h"
#include "platform/Computer.h"
#include "platform/Lifetime.h"

namespace quibbits {

class PartyDial {
public:
    /// Puts the icon into the tray. Computer and panels outlive the dial.
    PartyDial(const Computer& computer, Panels& panels, std::vector<PartyMember> party);
    ~PartyDial();
    PartyDial(const PartyDial&) = delete;
    PartyDial& operator=(const PartyDial&) = delete;

    /// Opens the dial at the icon. Without a place for the icon nothing happens.
    void open();
    void close();
    bool isOpen() const { return opened_ != nullptr; }
    /// Empty while the dial is closed.
    DialView* view() const { return opened_ ? opened_->view.get() : nullptr; }

    /// The middle of the icon's lower edge, in global coordinates: where balls fly from.
    std::optional<Point> anchor() const;

    /// Where the view goes for an icon at a place: below it, above it where the tray is at the
    /// bottom of the screen, beside it where it is at a side; and shifted to stay on the screen,
    /// clear of panels.
    static Rect viewFrame(Rect icon, const std::optional<Screen>& screen);
    /// Round ends for a view that has neither its icon's bar nor the screen's edge above it.
    static DialShape::Ends ends(const Rect& view, Rect icon, const std::optional<Screen>& screen);
    /// Points around the view that its panel has for the shadow.
    static constexpr double shadowMargin = 24;

    std::function<void()> onSettings;
    std::function<void()> onQuit;
    /// Each step of an item drag, in global coordinates, and none at its end.
    std::function<void(std::optional<Point>)> onItemDrag;
    /// An item was chosen by key, for whoever is out.
    std::function<void(Item)> onGive;

    // For records only; nothing depends on them.
    std::function<void()> onOpened;
    std::function<void()> onClosed;

private:
    /// All that lives only while the dial is open.
    struct Opened {
        std::unique_ptr<Panel> panel;
        std::unique_ptr<DialView> view;
        Subscription presses;
        Timer hovering;
        Subscription keys;
    };
    void clicked();
    void showMenu();
    Menu menu() const;
    void installMouse(Opened& dial, DialShape::Ends ends);
    Point pointerInView(const Panel& panel) const;
    void pick(int index, Point anchor);
    void pressedKey(WalkingKey key);
    void itemDragged(std::optional<Point> at);
    void pressedElsewhere();

    const Computer computer_;
    Panels& panels_;
    const std::vector<PartyMember> party_;
    std::unique_ptr<Opened> opened_;
    std::vector<std::unique_ptr<Opened>> closed_;  // until the loop's next turn
    Lifetime lifetime_;
};

}  // namespace quibbits
