#pragma once
// What the party dial shows while it is open: the party on a half wheel of slots, a plate that
// tells of the slot under the pointer, and a card of one creature's numbers with a tray of items to
// drag out. Made anew at every opening from what the party is then, and thrown away at closing. It
// sees creatures through their records only; its panel's owner gives it points and the pointer.

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "dial/DialShape.h"
#include "dial/FittedText.h"
#include "layers/LayerEngine.h"
#include "layers/Panel.h"
#include "party/PetStats.h"
#include "platform/Keyboard.h"
#include "platform/Text.h"
#include "rules/Item.h"

namespace quibbits {

class DialView {
public:
    /// Engine and ruler outlive the view.
    DialView(LayerEngine& engine, const TextMeasure& ruler, std::vector<PartyMember> party,
             DialShape::Ends ends = DialShape::Ends::cut);
    ~DialView();
    DialView(const DialView&) = delete;
    DialView& operator=(const DialView&) = delete;

    /// All that is drawn; as large as the shape, its lower left corner at the origin.
    const LayerRef& layer() const { return layer_; }

    /// Fades in, and the slots pop up one after the other.
    void appear();
    /// The pointer is at this point: lights up the slot under it and tells of it on the plate.
    void hover(Point at);
    std::optional<int> hovered() const { return hovered_; }

    /// A key: left and right walk along the slots, down to the items and up again; the last chooses
    /// what is lit.
    void walk(WalkingKey key);
    std::optional<std::size_t> pickedItem() const { return pickedItem_; }

    // The left button, in the view's coordinates.
    void mouseDown(Point at) { pressedAt_ = at; }
    void mouseDragged();
    void mouseUp(Point at);

    /// A slot with a creature was clicked.
    std::function<void(int)> onPick;
    /// An item was chosen by key.
    std::function<void(Item)> onGive;
    /// The user drags an item out of the tray: whoever has the panel begins the drag.
    std::function<void(ItemDrag)> onItemDragBegan;
    /// An item is dragged over a point in global coordinates; none when the drag has ended.
    std::function<void(std::optional<Point>)> onDrag;

    struct TrayItem {
        Item item = Item::azurine;
        Rect rect;
        LayerRef tile = {};
    };
    const std::vector<TrayItem>& items() const { return items_; }

    struct Slot {
        LayerRef container;
        LayerRef disc;
    };
    const Slot& slotLayers(int index) const { return slots_[static_cast<std::size_t>(index)]; }
    const Layer& nameLayer() const { return *name_; }
    const Layer& statusLayer() const { return *status_; }
    /// Holds the card's layers in the order in which they were built; none for an empty party.
    const LayerRef& cardLayer() const { return card_; }

private:
    enum class Refresh { atOnce, animated };
    void refresh(Refresh how);
    void walkAlong(int by);
    void choose();
    void scale(Layer& container, double to, Refresh how);
    struct PlateText {
        std::string name;
        std::string status;
    };
    PlateText plateText() const;
    void setText(Layer& layer, const Label& label);
    bool isMember(int index) const { return index < static_cast<int>(party_.size()); }

    // Built once (DialView.cpp, DialCard.cpp).
    void buildBackdrop(const Path& outline);
    Slot makeSlot(int index);
    void addPortrait(const PartyMember& member, const Slot& slot);
    void build();
    void buildCard(const PetStats& stats);
    void addEggText();
    void addNumbers(const PetStats& stats);
    void addTray();
    LayerRef add(Layer& parent, LayerProperties values);
    void addText(Layer& parent, const Label& label);

    LayerEngine& engine_;
    const TextMeasure& ruler_;
    const std::vector<PartyMember> party_;
    LayerRef layer_;
    LayerRef content_;
    std::array<Slot, DialShape::slotCount> slots_;
    LayerRef name_;
    LayerRef status_;
    LayerRef card_;
    std::vector<TrayItem> items_;
    std::optional<int> hovered_;
    std::optional<std::size_t> pickedItem_;
    std::optional<Point> lastPointer_;  // one that rests changes nothing
    std::optional<Point> pressedAt_;
};

}  // namespace quibbits
