// How a creature evolves, with how far it has come, and how to start over.

#include <algorithm>

#include "rules/Region.h"
#include "rules/Thresholds.h"
#include "settings/screens/Screens.h"

namespace quibbits::screens {

using namespace views;

namespace {

constexpr double chipWidth = 60;
constexpr double arrowWidth = 57;

struct Chip {
    Stage stage = Stage::egg;
    Stage current = Stage::egg;
    bool coralis = false;
    std::optional<bool> reached;  // by the line unless told
};

std::size_t placeIn(std::span<const Stage> stages, Stage stage) {
    return static_cast<std::size_t>(std::ranges::find(stages, stage) - stages.begin());
}

View stageChip(const Resources& resources, const Chip& chip, std::span<const Stage> stages) {
    const bool reached =
        chip.reached.value_or(placeIn(stages, chip.stage) <= placeIn(stages, chip.current));
    return {.content = Column{chipWidth},
            .id = "chip " + formName(chip.stage, chip.coralis),
            .children = {{.content = Picture{.image = portrait(resources, chip.stage, chip.coralis),
                                             .round = true,
                                             .drained = !reached}},
                         {.content = Text{formName(chip.stage, chip.coralis), TextStyle::caption}}},
            .opacity = reached ? 1 : 0.5};
}

View arrow(const std::string& text) {
    return {.content = Column{arrowWidth},
            .children = {
                {.content = Text{"→", TextStyle::headline}},
                {.content = Text{.text = text, .style = TextStyle::caption, .leastLines = 2}}}};
}

View electricChain(const Resources& resources, const PetStats& s) {
    const auto stages = line(Stage::sparrel);
    const auto chip = [&](Stage stage) {
        return stageChip(resources, {.stage = stage, .current = s.stage}, stages);
    };
    View last{
        .content = Column{chipWidth},
        .children = {
            stageChip(resources,
                      {.stage = Stage::thrummet, .current = s.coralis ? Stage::sparrel : s.stage},
                      stages),
            stageChip(resources, {.stage = Stage::thrummet, .coralis = true, .reached = s.coralis},
                      stages)}};
    return {.content = Line{},
            .id = "chain",
            .children = {{.content = Spacer{}},
                         chip(Stage::egg),
                         arrow("Hatch"),
                         chip(Stage::mizzle),
                         arrow("Friendship " + whole(readyFriendship)),
                         chip(Stage::sparrel),
                         arrow("Storm Pebble"),
                         std::move(last),
                         {.content = Spacer{}}}};
}

View ghostChain(const Resources& resources, const PetStats& s) {
    const auto stages = line(Stage::umbrool);
    const auto chip = [&](Stage stage) {
        return stageChip(resources, {.stage = stage, .current = s.stage}, stages);
    };
    return {.content = Line{},
            .id = "chain",
            .children = {{.content = Spacer{}},
                         chip(Stage::egg),
                         arrow("Hatch"),
                         chip(Stage::wispul),
                         arrow(level(gloamerLevel)),
                         chip(Stage::gloamer),
                         arrow("Tether Loop"),
                         chip(Stage::umbrool),
                         {.content = Spacer{}}}};
}

Views electricFacts(const UserDefaults& defaults, const PetStats& s) {
    std::string toThrummet;
    if (s.stage == Stage::sparrel) {
        toThrummet = s.canEvolve ? "Ready!" : level(s.level) + " / " + std::to_string(pebbleLevel);
    }
    return {
        fact("oval.portrait", "Egg → Mizzle", "Click the Egg in the menu bar dial."),
        fact("heart", "Mizzle → Sparrel",
             "Levels up with friendship 220 or more, as in the games. It asks you first: Evolve "
             "or Not Now.",
             s.stage == Stage::mizzle ? whole(s.friendship) + " / " + whole(readyFriendship) : ""),
        fact("bolt", "Sparrel → Thrummet",
             "Drag a Storm Pebble onto it, then choose Evolve. The stone appears in the dial's "
             "tray from " +
                 level(pebbleLevel) + ".",
             std::move(toThrummet)),
        fact("globe.asia.australia", "Region",
             "Fernvale gives Thrummet, Coralis gives Coralian Thrummet. Set it under Quibbit › "
             "Region.",
             displayName(currentRegion(defaults))),
    };
}

Views ghostFacts(const PetStats& s) {
    return {
        fact("oval.portrait", "Egg → Wispul", "Click the Egg in the menu bar dial."),
        fact("arrow.up.circle", "Wispul → Gloamer",
             "Reaching " + level(gloamerLevel) +
                 ", as in the games. It asks you first: Evolve or Not Now.",
             s.stage == Stage::wispul ? level(s.level) + " / " + std::to_string(gloamerLevel) : ""),
        fact("link", "Gloamer → Umbrool",
             "In the games Gloamer evolves when traded. Here: drag the Tether Loop from the "
             "dial's tray onto it (it appears there once it's a Gloamer).",
             s.stage == Stage::gloamer ? "Ready!" : ""),
    };
}

View startOver(const PetStats& s, bool asks) {
    View section{.content = Section{},
                 .id = "start over section",
                 .children = {{.content = Button{.title = "Start over with a new Egg…",
                                                 .role = ButtonRole::destructive},
                               .id = std::string(startsOver)}}};
    if (asks) {
        section.children.push_back(
            {.content = Alert{.title = "Start over with a new Egg?",
                              .message = s.name + " (" + level(s.level) +
                                         ") goes away for good, and a new Egg appears in the dial.",
                              .button = "Start Over",
                              .destructive = true},
             .id = std::string(confirmsStartOver)});
    }
    return section;
}

}  // namespace

Views evolutionPage(const Computer& computer, const PetControls& controls,
                    const QuibbitState& state) {
    const PetStats s = controls.stats();
    const bool ghost = controls.id == "umbrool";
    View how{.content = Section{.heading = "How it evolves"}, .id = "how"};
    how.children.push_back(ghost ? ghostChain(computer.resources, s)
                                 : electricChain(computer.resources, s));
    for (View& one : ghost ? ghostFacts(s) : electricFacts(computer.defaults, s)) {
        how.children.push_back(std::move(one));
    }
    Views page{std::move(how)};
    if (s.stage != Stage::egg) {
        const Fieldbook book = Growth::fieldbook(s.stage, s.coralis);
        page.push_back(
            {.content = Section{.heading = "Fieldbook · " + s.name},
             .id = "fieldbook",
             .children = {fact(
                 "book.closed", "The " + std::string(book.genus) + " · " + std::string(book.type),
                 book.entries.empty() ? "" : std::string(book.entries.back().text))}});
    }
    page.push_back(startOver(s, state.confirmsRestart));
    return page;
}

}  // namespace quibbits::screens
