// The card below the wheel: who is out, how it does, and the items that can be dragged out.

#include <algorithm>
#include <iterator>
#include <set>

#include "body/Pixels.h"
#include "dial/DialView.h"
#include "rules/Thresholds.h"

namespace quibbits {

namespace {

using DialShape::card;

constexpr Rect portraitFrame{card.x + 12, card.y + card.height - 58, 48, 48};
constexpr double portraitRadius = 9;

constexpr Rect headingFrame{card.x + 70, card.y + card.height - 24, 180, 16};
constexpr double headingRoom = 174;  // as far from the card's edge as all else
constexpr Rect foldedHeadingFrame{card.x + 70, card.y + card.height - 31, headingRoom, 27};
constexpr Rect eggTextFrame{card.x + 70, card.y + card.height - 60, 180, 32};

constexpr double barsTop = card.y + card.height - 38;  // the lower edge of the first bar
constexpr double barSpacing = 11;
constexpr double barWidth = 108;
constexpr double barHeight = 4;
constexpr double leastFilled = 0.04;  // so that a bar is never quite empty
constexpr Color pink{1.0, 55 / 255.0, 95 / 255.0, 1.0};
constexpr Color orange{1.0, 159 / 255.0, 10 / 255.0, 1.0};
constexpr Color yellow{1.0, 214 / 255.0, 10 / 255.0, 1.0};

constexpr double tileSide = 26;
constexpr double tileSpacing = 32;
constexpr double tightSpacing = 29;

std::string heading(const PetStats& stats) {
    std::string text = stats.name + " " + stats.gender;
    if (stats.shiny) text += " ★";
    if (stats.shimmerpox == PetStats::Shimmerpox::infected) text += " · SHPX";
    const int percent = static_cast<int>(stats.levelProgress * 100);
    return text + "  ·  Lv " + std::to_string(stats.level) + "  ·  " + std::to_string(percent) +
           "%";
}

}  // namespace

void DialView::build() {
    if (party_.empty()) return;
    const auto shown = std::ranges::find_if(party_, [](const PartyMember& member) {
        return member.isOut() && member.stats().stage != Stage::egg;
    });
    card_ = add(*content_,
                {.bounds = layer_->model().bounds, .position = layer_->model().bounds.center()});
    buildCard((shown == party_.end() ? party_.front() : *shown).stats());
}

void DialView::buildCard(const PetStats& stats) {
    add(*card_, {.bounds = {0, 0, portraitFrame.width, portraitFrame.height},
                 .position = portraitFrame.center(),
                 .content = Picture{stats.portrait, Filter::nearest},
                 .cornerRadius = portraitRadius,
                 .masksToBounds = true});
    if (stats.stage == Stage::egg) return addEggText();
    addNumbers(stats);
    addTray();
}

void DialView::addEggText() {
    addText(*card_,
            {.text = "Egg", .fontSize = 13, .weight = FontWeight::semibold, .frame = headingFrame});
    addText(*card_, {.text = "Something is moving inside!\nClick it above to hatch it.",
                     .fontSize = 10.5,
                     .color = Color::white(0.65),
                     .frame = eggTextFrame});
}

void DialView::addNumbers(const PetStats& stats) {
    addText(*card_, {.text = heading(stats),
                     .fontSize = 12.5,
                     .weight = FontWeight::semibold,
                     .frame = headingFrame,
                     .room = headingRoom,
                     .fold = Label::Fold{"  ·  Lv", "\nLv", foldedHeadingFrame}});
    struct Bar {
        const char* label;
        double value;
        Color color;
    };
    const std::array bars{Bar{"Friendship", stats.friendship / mostFriendship, pink},
                          Bar{"Belly", 1 - stats.hunger, orange},
                          Bar{"Energy", stats.energy, yellow}};
    double y = barsTop;
    for (const auto& [label, value, color] : bars) {
        addText(*card_, {.text = label,
                         .fontSize = 9,
                         .color = Color::white(0.6),
                         .frame = {card.x + 70, y - 4, 60, 11}});
        const LayerRef bar =
            add(*card_, {.background = Color::white(0.12), .cornerRadius = barHeight / 2});
        bar->setFrame({card.x + 132, y, barWidth, barHeight});
        const LayerRef fill = add(*bar, {.background = color, .cornerRadius = barHeight / 2});
        fill->setFrame({0, 0, barWidth * Range{leastFilled, 1}.clamp(value), barHeight});
        y -= barSpacing;
    }
}

void DialView::addTray() {
    std::set<Item> wanted;
    for (const PartyMember& member : party_) {
        const PetStats stats = member.stats();
        if (stats.canEvolve && stats.evolveItem) wanted.insert(*stats.evolveItem);
    }
    std::vector<Item> offered;
    std::ranges::copy_if(allItems, std::back_inserter(offered),
                         [&](Item item) { return isBerry(item) || wanted.contains(item); });
    // With both evolution items there is one tile too many for the usual spacing.
    const double last = tileSpacing * (static_cast<double>(offered.size()) - 1) + tileSide;
    const double spacing = last > card.width - 24 ? tightSpacing : tileSpacing;
    Rect rect{card.x + 12, card.y + 8, tileSide, tileSide};
    for (const Item item : offered) {
        const LayerRef tile = add(*card_, {.background = Color::white(0.1), .cornerRadius = 8});
        tile->setFrame(rect);
        const Rect inside = Rect{0, 0, tileSide, tileSide}.inset(4);
        add(*tile, {.bounds = {0, 0, inside.width, inside.height},
                    .position = inside.center(),
                    .content = Picture{Pixels::item(item), Filter::nearest}});
        items_.push_back({item, rect, tile});
        rect.x += spacing;
    }
}

}  // namespace quibbits
