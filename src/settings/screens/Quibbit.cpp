// A creature's own page: how it is, what only it can do, its animations, the guide and its reasons.

#include <algorithm>
#include <array>
#include <cmath>

#include "rules/Region.h"
#include "rules/Thresholds.h"
#include "settings/screens/Screens.h"

namespace quibbits::screens {

using namespace views;

namespace {

constexpr Color pink = Color::rgb(0xff5a8f);
constexpr Color orange = Color::rgb(0xff9a3c);
constexpr Color yellow = Color::rgb(0xf2c230);

constexpr Size previewSize{120, 110};
constexpr double mostEnlarged = 2;
constexpr Point previewFoot{60, 22};
constexpr int previewsAtOnce = 9;       // as many as are seen first
constexpr Seconds eachDirection = 1.2;  // at least this long, as far as whole runs allow
constexpr Seconds shortestRun = 0.05;

std::string pox(const PetStats& stats) {
    if (stats.shimmerpox == PetStats::Shimmerpox::infected) return " · Shimmerpox (EXP ×2)";
    if (stats.shimmerpox == PetStats::Shimmerpox::cured) return " · Shimmerpox cured";
    return {};
}

View experience(const PetStats& stats) {
    return {.content =
                Meter{.title = "EXP " + grouped(stats.exp) + " / " + grouped(stats.nextLevelEXP),
                      .amount = stats.levelProgress}};
}

View statsSection(const PetStats& stats) {
    View section{.content = Section{}, .id = "stats"};
    View words{.content = Column{}};
    if (stats.stage == Stage::egg) {
        words.children = {{.content = Text{"Egg", TextStyle::title}},
                          {.content = Text{"Something is moving inside! Click it in the menu bar "
                                           "dial to hatch it.",
                                           TextStyle::secondary}}};
    } else {
        words.children = {
            {.content = Text{stats.name + " " + stats.gender + (stats.shiny ? " ★" : "") +
                                 "  ·  Lv " + std::to_string(stats.level),
                             TextStyle::title}},
            {.content =
                 Text{std::string(stats.nature.name) + " nature · Ability: " + stats.ability.name +
                          " · " + growthRateName(growthRate(stats.stage)) + " growth" + pox(stats),
                      TextStyle::secondary}}};
    }
    if (stats.stage == Stage::egg) {
        section.children.push_back(std::move(words));
        return section;
    }
    section.children.push_back(
        {.content = Line{},
         .children = {{.content = Picture{.image = stats.portrait, .size = 80, .round = true}},
                      std::move(words)}});
    section.children.push_back(
        {.content = Meter{.title = "Friendship  " + whole(stats.friendship) + " / 255",
                          .amount = stats.friendship / mostFriendship,
                          .tint = pink}});
    section.children.push_back(
        {.content = Meter{.title = "Belly", .amount = 1 - stats.hunger, .tint = orange}});
    section.children.push_back(
        {.content = Meter{.title = "Energy", .amount = stats.energy, .tint = yellow}});
    section.children.push_back(experience(stats));
    if (stats.canEvolve && stats.evolveItem) {
        section.children.push_back({.content = Text{"Ready to evolve: drag the " +
                                                    std::string(displayName(*stats.evolveItem)) +
                                                    " from the menu bar dial onto it."}});
    }
    return section;
}

View regionPicker(const UserDefaults& defaults) {
    Picker picker{.title = "Region", .chosen = std::string(rawValue(currentRegion(defaults)))};
    for (const Region region : {Region::fernvale, Region::coralis}) {
        picker.choices.push_back(
            {.id = std::string(rawValue(region)), .title = displayName(region)});
    }
    return {.content = std::move(picker), .id = std::string(storesPrefix) + "region"};
}

/// A switch of the creature's own. A key that was never written counts as on.
View keyToggle(const UserDefaults& defaults, std::string_view key, std::string title,
               std::string detail) {
    return {.content = Toggle{.title = std::move(title),
                              .detail = std::move(detail),
                              .isOn = defaults.onlyBoolean(key).value_or(true)},
            .id = std::string(storesPrefix) + std::string(key)};
}

View sparrelTricks(const UserDefaults& defaults) {
    return {.content = Section{.heading = "Sparrel's own tricks"},
            .id = "tricks",
            .children = {
                regionPicker(defaults),
                {.content = Text{"Where it lives decides which Thrummet a Storm Pebble makes. "
                                 "Coralis gives Coralian Thrummet.",
                                 TextStyle::secondary}},
                fact("bolt", "Thunderbolt",
                     "Its delete move: a bolt from its body to the file. With Thunder, files not "
                     "on screen are struck from the sky."),
                fact("battery.100.bolt", "Lightning Rod",
                     "While your Mac is charging, it soaks up the power: its energy refills and "
                     "it doesn't get hungry."),
                fact("wind", "Coralian Thrummet",
                     "Current Rider (surfs faster while charging), floats about in open air and "
                     "teleports next to your cursor."),
            }};
}

View umbroolFlight(const UserDefaults& defaults) {
    return {.content = Section{},
            .id = "flight",
            .children = {
                fact("wind", "Levitate · free flight",
                     "Flies anywhere on your screen in hopping arcs, hovers with its tongue out, "
                     "and drifts back down. Never falls when you drop it. Wispul and Gloamer "
                     "float everywhere; Umbrool walks short hops on the floor too."),
                fact("circle.dotted.circle", "Gloom Orb",
                     "Its file delete: charges a Gloom Orb, throws it at the file's icon, the "
                     "file is sucked into the shadow (to the Trash), and it eats the wisp that's "
                     "left."),
                keyToggle(defaults, "umbrool.phaseThroughWindows", "Sinks into your window",
                          "Flies to the window you're working in, sinks into it, and pops its "
                          "head up along an edge with its tongue out. Only where it may be in "
                          "front of your apps (never full-screen apps, videos, YouTube or apps "
                          "you listed in General)."),
                fact("link", "Tether Loop",
                     "Gloamer evolves into Umbrool with a Tether Loop from the dial (in the "
                     "games: by trading)."),
            }};
}

View umbroolTricks(const UserDefaults& defaults) {
    struct Trick {
        std::string_view key, title, detail;
    };
    static constexpr std::array tricks{
        Trick{"umbrool.licksScreen", "Licks your screen",
              "Comes right up to the glass, licks it with its tongue (Lick) and leaves a wet "
              "smear that drips and fades after a few seconds."},
        Trick{"umbrool.stealsCursor", "Steals your cursor",
              "Umbrool only. When your mouse sits untouched for a minute and a half, it grabs "
              "your cursor (a fake: the real one is just hidden), tugs it, and flies off with "
              "it. Touch the mouse or trackpad and it's yours again at once: \"Peek-a-boo!\""},
        Trick{"umbrool.shadowTricks", "Shadow tricks",
              "Bursts into shadow clones (\"Which one's the real me?\"), leaves a trail of them "
              "when it flies far, and its own shadow runs off and swaps places with it."},
        Trick{"umbrool.pranks", "Pranks",
              "Tickles your Dock, tries to drag your window away by its corner (it's too heavy), "
              "or pats ghostly handprints across your screen that fade after a few seconds."},
        Trick{"umbrool.nightOwl", "Ghost hour",
              "From 7 pm to 6 am, or whenever your Mac is in dark mode, it glows a faint purple "
              "and gets up to much more mischief (and naps less)."},
    };
    View section{.content = Section{.footer = "Wispul, Gloamer and Umbrool all lick; only Umbrool "
                                              "has the Pull to steal your cursor."},
                 .id = "tricks",
                 .children = {{.content = Text{"Umbrool's own tricks", TextStyle::headline}}}};
    for (const Trick& trick : tricks) {
        section.children.push_back(
            keyToggle(defaults, trick.key, std::string(trick.title), std::string(trick.detail)));
    }
    return section;
}

View overview(const Computer& computer, const PetControls& controls) {
    View form{.content = Form{}, .id = "overview", .children = {statsSection(controls.stats())}};
    if (controls.id == "pet") form.children.push_back(sparrelTricks(computer.defaults));
    if (controls.id == "umbrool") {
        form.children.push_back(umbroolFlight(computer.defaults));
        form.children.push_back(umbroolTricks(computer.defaults));
    }
    return form;
}

View gallery(const Computer& computer, const PetControls& controls, Previews& previews) {
    const auto playful = controls.playful();
    int fresh = 0;
    View cells{.content = Grid{.cellWidth = 150}, .id = "cells"};
    for (const NamedAnim& each : controls.animations()) {
        auto known = previews.known.find(each.name);
        const bool isSeen = known != previews.known.end();
        previews.isWhole = previews.isWhole && (isSeen || fresh < previewsAtOnce);
        if (!isSeen && fresh++ < previewsAtOnce) {
            known =
                previews.known.emplace(each.name, preview(controls.directions(each.name))).first;
        }
        View cell{.content = Card{}, .id = "cell " + each.name};
        cell.children = {{.content = Column{},
                          .children = {{.content = Line{},
                                        .children = {{.content = Spacer{}},
                                                     {.content = known == previews.known.end()
                                                                     ? Preview{.size = previewSize}
                                                                     : known->second},
                                                     {.content = Spacer{}}}},
                                       {.content = Text{each.name, TextStyle::caption}},
                                       {.content = Button{.title = "Play"},
                                        .id = std::string(playsPrefix) + each.name,
                                        .spoken = "Play " + each.name}}}};
        if (std::ranges::find(playful, each.name) != playful.end()) {
            cell.children.front().children.push_back(
                keyToggle(computer.defaults, "move." + each.name, "In routine", ""));
            cell.children.front().children.back().spoken = each.name + " in routine";
        }
        cells.children.push_back(std::move(cell));
    }
    return {.content = Form{}, .id = "gallery", .children = {std::move(cells)}};
}

}  // namespace

Preview preview(const std::vector<Anim>& directions) {
    Preview shown{.size = previewSize};
    if (directions.empty() || !directions.front().isPlayable()) return shown;
    const Anim& first = directions.front();
    const double enlarged = std::min(previewSize.height / first.frameSize.height, mostEnlarged);
    const Size size{first.frameSize.width * enlarged, first.frameSize.height * enlarged};
    const Anim& standing = directions[std::min<std::size_t>(2, directions.size() - 1)];
    const double height = std::max(standing.frameSize.height, 1.0);
    const double anchor = (height * 0.5 - standing.feet) / height;
    shown.place = {previewFoot.x - size.width / 2, previewFoot.y - anchor * size.height, size.width,
                   size.height};
    for (const Anim& direction : directions) {
        const auto image = static_cast<std::int64_t>(shown.images.size());
        shown.images.push_back(direction.image);
        const double runs = std::floor(eachDirection / std::max(direction.duration, shortestRun));
        for (int run = 0; run < std::max(static_cast<int>(runs), 1); ++run) {
            for (const Rect& part : direction.frames) shown.frames.push_back({image, part});
        }
    }
    shown.frameTime = first.duration / static_cast<double>(first.frames.size());
    return shown;
}

View quibbit(const Computer& computer, const PetControls& controls, const QuibbitState& state,
             Previews& previews) {
    View tabs{.content = TabView{.chosen = state.tab}, .id = std::string(choosesTab)};
    const auto add = [&](std::string title, std::string symbol, auto page) {
        View tab{.content = Tab{std::move(title), std::move(symbol)}};
        tab.id = "tab " + std::to_string(tabs.children.size());
        // Only the open page is built: the others are read when they are opened.
        if (static_cast<std::int64_t>(tabs.children.size()) == state.tab) tab.children = {page()};
        tabs.children.push_back(std::move(tab));
    };
    add("Quibbit", "bolt.fill", [&] { return overview(computer, controls); });
    add("Animations", "film.stack", [&] { return gallery(computer, controls, previews); });
    add("Guide", "book", [&] { return guide(computer, controls, state); });
    add("Why?", "brain", [&] { return why(controls, computer.runLoop.date()); });
    return {.content = Column{}, .id = "quibbit " + controls.id, .children = {std::move(tabs)}};
}

}  // namespace quibbits::screens
