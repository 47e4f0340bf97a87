// The rules of a creature's life, with its own values beside them.

#include <algorithm>
#include <array>
#include <cstdio>

#include "rules/Thresholds.h"
#include "settings/screens/Screens.h"

namespace quibbits::screens {

using namespace views;

namespace {

constexpr double levelPace = 1'000'000;  // the total that counts as the ordinary pace

constexpr std::array guidePages{"Evolution", "Growth", "Traits", "Moves"};

View labelled(std::string label, std::string value) {
    return {.content = Fact{.title = std::move(label), .value = std::move(value)}};
}

// Growth -----------------------------------------------------------------------------------------

struct Row {
    const char* label;
    const char* value;
};

constexpr std::array bonuses{
    Row{"Petting (once per 15 min)", "3 %"}, Row{"A berry", "8 %"},
    Row{"A berry it likes", "15 %"},         Row{"Playing", "4 %"},
    Row{"Exploring a file", "3 %"},          Row{"Zapping a file", "10 %"},
    Row{"Dev hook: celebrate", "5 %"},
};

constexpr std::array friendships{
    Row{"Hatching", "starts at 120"},
    Row{"Petting, once per 15 min", "+2 (+3 with Cheek Rub)"},
    Row{"A berry", "+2 (liked +4, disliked +1)"},
    Row{"Levelling up", "+2"},
    Row{"Full", "belly over 85 % (a berry fills ~⅓)"},
    Row{"Hungry 8 h while you're on", "−10"},
    Row{"Coming back after being away", "+1"},
    Row{"Dropped hard", "−10"},
};

Views rows(std::span<const Row> table) {
    Views list;
    for (const Row& row : table) list.push_back(labelled(row.label, row.value));
    return list;
}

std::string pace(GrowthRate rate) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.2g× pace", levelPace / expForLevel(rate, maxLevel));
    return text.data();
}

Views growthPage(const PetStats& s) {
    const GrowthRate own = growthRate(s.stage);
    View levels{
        .content = Section{.heading = "Levels"},
        .id = "levels",
        .children = {
            fact("chart.line.uptrend.xyaxis", "Real levels, 1 to 100",
                 growthRateName(own) + " growth: Lv 100 takes " +
                     grouped(expForLevel(own, maxLevel)) + " EXP in total, as in the games.",
                 s.stage == Stage::egg ? "" : level(s.level)),
            fact("clock", "Earned by spending time together",
                 "Up to 2 % of a level per minute while it's out and awake (about 50 min a "
                 "level). Slower when friendship is low; half speed when tired or on low "
                 "battery."),
            fact("pause.circle", "No EXP while",
                 "it's in its ball, napping because you're away, or still an Egg."),
        }};
    View rates{.content = Section{.heading = "Growth rates"}, .id = "rates"};
    for (int i = 0; i < growthRateCount; ++i) {
        const auto rate = static_cast<GrowthRate>(i);
        rates.children.push_back(
            {.content = Fact{.title = growthRateName(rate),
                             .detail = "Lv 100 at " + grouped(expForLevel(rate, maxLevel)) + " EXP",
                             .value = pace(rate),
                             .strong = rate == own}});
    }
    return {std::move(levels),
            {.content = Section{.heading = "Bonus EXP (share of a level)"},
             .id = "bonuses",
             .children = rows(bonuses)},
            {.content = Section{.heading = "Friendship · " + whole(s.friendship) + " / 255"},
             .id = "friendship",
             .children = rows(friendships)},
            std::move(rates)};
}

// Traits -----------------------------------------------------------------------------------------

struct StatWords {
    const char* name;
    const char* flavour;
};

StatWords words(Nature::Stat stat) {
    static constexpr std::array all{StatWords{"Attack", "Spicy"}, StatWords{"Defense", "Sour"},
                                    StatWords{"Sp. Atk", "Dry"}, StatWords{"Sp. Def", "Bitter"},
                                    StatWords{"Speed", "Sweet"}};
    return all[static_cast<std::size_t>(stat)];
}

std::string natureDetail(const Nature& nature) {
    std::string text = nature.effect();
    if (nature.up) text += " Likes " + std::string(words(*nature.up).flavour) + " berries";
    if (nature.down) text += ", dislikes " + std::string(words(*nature.down).flavour) + ".";
    return text;
}

View natureRow(const Nature& nature, bool own) {
    const bool neutral = !nature.up || !nature.down;
    return {.content = Fact{.title = std::string(nature.name),
                            .detail = nature.effect(),
                            .value = neutral ? "Neutral"
                                             : "+" + std::string(words(*nature.up).name) + " −" +
                                                   words(*nature.down).name,
                            .strong = own}};
}

std::string shimmerpox(PetStats::Shimmerpox pox) {
    switch (pox) {
        case PetStats::Shimmerpox::infected: return "Active · EXP ×2";
        case PetStats::Shimmerpox::cured: return "Cured";
        case PetStats::Shimmerpox::none: break;
    }
    return "Never";
}

Views traitsPage(const PetStats& s) {
    const bool egg = s.stage == Stage::egg;
    const std::string unknown = "?";
    View yours{
        .content = Section{.heading = "Yours"},
        .id = "yours",
        .children = {
            fact("bolt.circle", "Ability · " + s.ability.name, s.ability.effect),
            fact("person.2", "Gender", "50 % ♂ / 50 % ♀, set when it hatches.",
                 egg ? unknown : s.gender),
            fact("sparkles", "Shiny",
                 "1 in " + grouped(shinyOdds) +
                     " Eggs. Different colours, stars at hatching, ★ by its name.",
                 egg       ? unknown
                 : s.shiny ? "Yes ★"
                           : "No"),
            fact("cross.case", "Shimmerpox",
                 "Rare (about 1 in 21,845). Doubles EXP for 1–4 days, then it's cured for good.",
                 shimmerpox(s.shimmerpox)),
        }};
    View nature{.content = Section{.heading = "Nature · " + (egg ? "set when it hatches"
                                                                 : std::string(s.nature.name))},
                .id = "nature"};
    if (!egg) {
        nature.children.push_back(
            fact("theatermasks", std::string(s.nature.name), natureDetail(s.nature)));
    }
    View all{.content = Disclosure{"All 25 natures"}, .id = "natures"};
    for (const Nature& each : Nature::all()) {
        all.children.push_back(natureRow(each, !egg && each == s.nature));
    }
    nature.children.push_back(std::move(all));
    nature.children.push_back(fact("leaf", "Berry flavours",
                                   "Cinnet spicy · Sourling sour · Blushum sweet · Hazzel dry · "
                                   "Myrrow bitter · Azurine any"));
    Views page{std::move(yours), std::move(nature)};
    if (s.coralis) {
        page.push_back({.content = Section{.heading = "Coralian Thrummet"},
                        .id = "regional",
                        .children = {fact("wind", "Current Rider",
                                          "While your Mac is charging, it surfs around 50 % "
                                          "faster."),
                                     fact("sparkle", "Psychic",
                                          "Floats about in open air and teleports next to your "
                                          "cursor now and then.")}});
    }
    return page;
}

// Moves ------------------------------------------------------------------------------------------

struct GuideForm {
    Stage stage = Stage::mizzle;
    bool coralis = false;
    std::string id() const { return std::string(rawValue(stage)) + (coralis ? "-coralis" : ""); }
};

std::vector<GuideForm> forms(bool ghost) {
    if (ghost) return {{Stage::wispul}, {Stage::gloamer}, {Stage::umbrool}};
    return {{Stage::mizzle}, {Stage::sparrel}, {Stage::thrummet}, {Stage::thrummet, true}};
}

View moveRow(const Move& move, bool known) {
    return {.content = Fact{.symbol = known ? "checkmark.circle.fill" : "circle",
                            .title = level(move.level) + "  " + std::string(move.name),
                            .detail = std::string(move.effect.value_or("Battle only"))}};
}

Views movesPage(const PetStats& s, bool ghost, const std::optional<std::string>& chosen) {
    const auto all = forms(ghost);
    const auto isOwn = [&](const GuideForm& f) {
        return f.stage == s.stage && f.coralis == s.coralis;
    };
    auto own = std::ranges::find_if(all, isOwn);
    if (own == all.end()) own = all.begin();
    auto shown = chosen ? std::ranges::find(all, *chosen, &GuideForm::id) : own;
    if (shown == all.end()) shown = own;

    Picker picker{.title = "Quibbit", .chosen = shown->id()};
    for (const GuideForm& form : all) {
        picker.choices.push_back(
            {.id = form.id(),
             .title = formName(form.stage, form.coralis) + (&form == &*own ? " (yours)" : "")});
    }
    View section{.content = Section{.heading = formName(shown->stage, shown->coralis) + "'s moves"},
                 .id = "moves " + shown->id()};
    for (const auto table : {Growth::moves(), UmbroolLine::moves()}) {
        for (const Move& move : table) {
            if (move.stage != shown->stage || move.coralis != shown->coralis) continue;
            section.children.push_back(moveRow(move, shown == own && s.known.contains(move.name)));
        }
    }
    return {{.content = Section{},
             .id = "which",
             .children = {{.content = std::move(picker), .id = std::string(choosesForm)},
                          {.content = Text{"Real Quartz/Basalt level-up moves. ✓ means yours "
                                           "knows it.",
                                           TextStyle::caption}}}},
            std::move(section)};
}

}  // namespace

View guide(const Computer& computer, const PetControls& controls, const QuibbitState& state) {
    const PetStats s = controls.stats();
    const bool ghost = controls.id == "umbrool";
    Picker pages{.title = "Page",
                 .chosen = guidePages[static_cast<std::size_t>(state.guide)],
                 .segmented = true};
    for (const char* page : guidePages) pages.choices.push_back({.id = page, .title = page});

    View form{.content = Form{}, .id = "guide " + pages.chosen};
    switch (state.guide) {
        case GuidePage::evolution: form.children = evolutionPage(computer, controls, state); break;
        case GuidePage::growth: form.children = growthPage(s); break;
        case GuidePage::traits: form.children = traitsPage(s); break;
        case GuidePage::moves: form.children = movesPage(s, ghost, state.form); break;
    }
    return {.content = Column{},
            .children = {{.content = std::move(pages), .id = std::string(choosesGuidePage)},
                         std::move(form)}};
}

std::optional<GuidePage> guidePageNamed(std::string_view name) {
    const auto found = std::ranges::find(guidePages, name);
    if (found == guidePages.end()) return std::nullopt;
    return static_cast<GuidePage>(found - guidePages.begin());
}

}  // namespace quibbits::screens
