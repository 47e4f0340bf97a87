// The party at a glance: a card for every species, those that are yet to come included.

#include <algorithm>

#include "rules/Thresholds.h"
#include "settings/screens/Screens.h"

namespace quibbits::screens {

using namespace views;

namespace {

constexpr std::int64_t blurbLines = 3;
constexpr Color pink = Color::rgb(0xff5a8f);

View titleOf(const Roster& slot, const PetStats* stats) {
    std::string title(slot.name);
    if (stats && stats->stage == Stage::egg) title += " · Egg";
    if (stats && stats->stage != Stage::egg) {
        title = stats->name + " " + stats->gender + (stats->shiny ? " ★" : "");
    }
    return {.content = Text{std::move(title), stats ? TextStyle::headline : TextStyle::secondary}};
}

View secondLine(const Roster& slot, const PetStats* stats) {
    std::string line(slot.type);
    if (stats && stats->stage == Stage::egg) line = "Waiting to hatch in the dial";
    if (stats && stats->stage != Stage::egg) {
        line = "Lv " + std::to_string(stats->level) + " · " + line;
    }
    return {.content = Text{std::move(line), TextStyle::secondary}};
}

View card(const Roster& slot, const PetStats* stats) {
    View words{.content = Column{}, .children = {titleOf(slot, stats), secondLine(slot, stats)}};
    if (stats && stats->stage != Stage::egg) {
        words.children.push_back(
            {.content = Meter{.amount = stats->friendship / mostFriendship, .tint = pink},
             .spoken = "Friendship"});
    }
    words.children.push_back(
        {.content = Text{
             .text = std::string(slot.blurb), .style = TextStyle::faint, .mostLines = blurbLines}});

    View card{.content = Card{.opens = stats != nullptr}, .opacity = stats ? 1 : 0.6};
    card.spoken = words.children.front().as<Text>()->text;
    card.id = (stats ? std::string(creaturePrefix) : "coming ") + std::string(slot.id);
    card.children = {{.content = Picture{.image = stats ? stats->portrait : Image{},
                                         .symbol = stats ? "" : "questionmark",
                                         .round = true}},
                     std::move(words)};
    return card;
}

}  // namespace

View partyGrid(const std::vector<PetControls>& party) {
    View cells{.content = Grid{.cellWidth = 240}};
    for (const Roster& slot : roster) {
        const auto controls = std::ranges::find(party, slot.id, &PetControls::id);
        if (controls == party.end()) {
            cells.children.push_back(card(slot, nullptr));
            continue;
        }
        const PetStats stats = controls->stats();
        cells.children.push_back(card(slot, &stats));
    }
    return {.content = Form{},
            .id = "party",
            .children = {{.content = Text{"Your party", TextStyle::title}},
                         {.content = Text{"Click a Quibbit for its stats, guide, animations and "
                                          "its own tricks. The rules every Quibbit follows are "
                                          "under General.",
                                          TextStyle::secondary}},
                         std::move(cells)}};
}

}  // namespace quibbits::screens
