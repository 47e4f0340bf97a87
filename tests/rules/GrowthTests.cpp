#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "rules/Growth.h"
#include "rules/Region.h"
#include "sim/SimulatedComputer.h"

namespace quibbits {
namespace {

bool holdsAll(const MoveNames& all, const MoveNames& some) {
    return std::ranges::includes(all, some);
}

MoveNames without(MoveNames names, const MoveNames& others) {
    std::erase_if(names, [&](auto name) { return others.contains(name); });
    return names;
}

TEST(Levels, BeginAtTheTotalsOfTheirCurve) {
    using enum GrowthRate;
    struct Row {
        GrowthRate rate;
        int level;
        double total;
    };
    for (const auto& [rate, level, total] : std::vector<Row>{
             {erratic, 49, 120001},      {erratic, 50, 125000},
             {erratic, 67, 249633},      {erratic, 68, 257834},
             {erratic, 97, 571333},      {erratic, 98, 583539},
             {erratic, 100, 600000},     {fast, 2, 6},
             {fast, 100, 800000},        {mediumFast, 2, 8},
             {mediumFast, 100, 1000000}, {mediumSlow, 2, 9},
             {mediumSlow, 3, 57},        {mediumSlow, 25, 11735},
             {mediumSlow, 100, 1059860}, {slow, 3, 33},
             {slow, 100, 1250000},       {fluctuating, 14, 1591},
             {fluctuating, 15, 1957},    {fluctuating, 35, 42017},
             {fluctuating, 36, 46656},   {fluctuating, 100, 1640000},
         }) {
        EXPECT_EQ(expForLevel(rate, level), total) << static_cast<int>(rate) << " at " << level;
    }
}

TEST(Levels, ComeAtTheExactPointAndNotATenthBefore) {
    for (int rate = 0; rate < growthRateCount; ++rate) {
        const auto curve = static_cast<GrowthRate>(rate);
        for (int level = 2; level <= maxLevel; ++level) {
            const double total = expForLevel(curve, level);
            EXPECT_EQ(levelFor(curve, total), level) << "rate " << rate;
            EXPECT_EQ(levelFor(curve, total - 0.1), level - 1) << "rate " << rate;
        }
        EXPECT_EQ(levelFor(curve, -5), 1);
        EXPECT_EQ(levelFor(curve, 1e12), maxLevel);
        EXPECT_EQ(expForLevel(curve, 1), 0);
    }
}

TEST(Stages, StandOnOneLineAndAreReadBackByTheirWord) {
    for (int i = 0; i < stageCount; ++i) {
        const auto stage = static_cast<Stage>(i);
        EXPECT_EQ(stageNamed(rawValue(stage)), stage);
        EXPECT_EQ(std::ranges::count(line(stage), stage), 1);
        EXPECT_EQ(line(stage).front(), Stage::egg);
        const bool ghost = std::ranges::count(line(stage), Stage::umbrool) == 1;
        EXPECT_EQ(growthRate(stage), ghost ? GrowthRate::mediumSlow : GrowthRate::mediumFast);
    }
    EXPECT_EQ(line(Stage::egg).back(), Stage::thrummet) << "an egg by itself is electric";
    EXPECT_EQ(displayName(Stage::gloamer), "Gloamer");
    for (const char* nonsense : {"", "Sparrel", "sparrel ", "pet"}) {
        EXPECT_EQ(stageNamed(nonsense), std::nullopt) << nonsense;
    }
}

TEST(AMove, IsLearntAtItsLevelAndNotBefore) {
    using enum Stage;
    struct Row {
        Stage stage;
        int level;
        const char* move;
    };
    for (const auto& [stage, level, move] : std::vector<Row>{
             {mizzle, 8, "Sweet Peck"},
             {mizzle, 20, "Charm"},
             {sparrel, 8, "Mirror Step"},
             {sparrel, 12, "Charge Orb"},
             {sparrel, 36, "Thunderbolt"},
             {sparrel, 44, "Thunder"},
             {thrummet, 5, "Thunderbolt"},
             {wispul, 4, "Hypnosis"},
             {wispul, 48, "Sleep Sipper"},
             {gloamer, 48, "Gloom Orb"},
             {gloamer, 60, "Sleep Sipper"},
             {umbrool, 48, "Gloom Orb"},
         }) {
        const auto names = [&, s = stage](int at) {
            return growthRate(s) == GrowthRate::mediumSlow ? UmbroolLine::known(s, at)
                                                           : Growth::known(s, at, false);
        };
        EXPECT_FALSE(names(level - 1).contains(move)) << move;
        EXPECT_TRUE(names(level).contains(move)) << move;
    }
}

TEST(AnElectricCreature, ForgetsNothingWhenItLevelsOrEvolves) {
    for (const bool coralis : {false, true}) {
        MoveNames before;
        for (int level = 1; level <= maxLevel; ++level) {
            const auto mizzle = Growth::known(Stage::mizzle, level, coralis);
            const auto sparrel = Growth::known(Stage::sparrel, level, coralis);
            const auto thrummet = Growth::known(Stage::thrummet, level, coralis);
            EXPECT_TRUE(holdsAll(sparrel, mizzle)) << level;
            EXPECT_TRUE(holdsAll(thrummet, sparrel)) << level;
            EXPECT_TRUE(holdsAll(thrummet, before)) << level;
            before = thrummet;
        }
    }
}

TEST(TheRegionalThirdStage, KnowsPsychicInPlaceOfThePlainOnesOwnMove) {
    const auto plain = Growth::known(Stage::thrummet, 50, false);
    const auto regional = Growth::known(Stage::thrummet, 50, true);
    EXPECT_EQ(without(regional, plain), MoveNames{"Psychic"});
    EXPECT_EQ(without(plain, regional).size(), 1u);
    // The region changes nothing before the third stage.
    EXPECT_EQ(Growth::known(Stage::sparrel, 100, true), Growth::known(Stage::sparrel, 100, false));
}

TEST(AGloamer, KeepsItsFirstListUpToLevelTwentyFourAndLearnsNoMoreOfIt) {
    const auto kept = UmbroolLine::known(Stage::wispul, 24);
    for (int level = 1; level <= maxLevel; ++level) {
        const auto gloamer = UmbroolLine::known(Stage::gloamer, level);
        EXPECT_TRUE(holdsAll(gloamer, UmbroolLine::known(Stage::wispul, std::min(level, 24))));
        MoveNames allowed = kept;
        for (const Move& move : UmbroolLine::moves()) {
            if (move.stage == Stage::gloamer && move.level <= level) allowed.insert(move.name);
        }
        EXPECT_TRUE(holdsAll(allowed, gloamer)) << level;

        const auto umbrool = UmbroolLine::known(Stage::umbrool, level);
        EXPECT_TRUE(holdsAll(umbrool, gloamer));
        EXPECT_EQ(umbrool.size(), gloamer.size() + 2);
    }
}

TEST(Moves, OfAnEggAndOfTheOtherLineAreNone) {
    EXPECT_TRUE(Growth::known(Stage::egg, 100, true).empty());
    EXPECT_TRUE(UmbroolLine::known(Stage::egg, 100).empty());
    EXPECT_TRUE(Growth::known(Stage::umbrool, 100, false).empty());
    EXPECT_TRUE(UmbroolLine::known(Stage::thrummet, 100).empty());
}

TEST(Learnsets, HaveTheirLengthsAndEveryNameOnce) {
    std::map<std::pair<Stage, bool>, std::size_t> rows;
    std::map<std::pair<Stage, bool>, MoveNames> names;
    for (const auto moves : {Growth::moves(), UmbroolLine::moves()}) {
        for (const Move& move : moves) {
            ++rows[{move.stage, move.coralis}];
            names[{move.stage, move.coralis}].insert(move.name);
        }
    }
    using enum Stage;
    const std::map<std::pair<Stage, bool>, std::size_t> expected{
        {{mizzle, false}, 7},   {{sparrel, false}, 20}, {{thrummet, false}, 21},
        {{thrummet, true}, 21}, {{wispul, false}, 14},  {{gloamer, false}, 15},
        {{umbrool, false}, 2}};
    EXPECT_EQ(rows, expected);
    for (const auto& [list, some] : names) EXPECT_EQ(some.size(), rows[list]);
}

TEST(Learnsets, PromiseTheSameEffectWhereverAMoveStands) {
    std::map<std::string_view, std::optional<std::string_view>> effects;
    std::size_t withEffect = 0;
    for (const auto moves : {Growth::moves(), UmbroolLine::moves()}) {
        for (const Move& move : moves) {
            const auto [entry, isNew] = effects.emplace(move.name, move.effect);
            EXPECT_EQ(entry->second, move.effect) << move.name;
            if (isNew && move.effect) ++withEffect;
        }
    }
    EXPECT_EQ(withEffect, 18u);
}

TEST(TheFieldbook, TellsThreeThingsOfAFormAndFourOfTheRegionalOne) {
    for (int i = 0; i < stageCount; ++i) {
        const auto stage = static_cast<Stage>(i);
        for (const bool coralis : {false, true}) {
            const Fieldbook page = Growth::fieldbook(stage, coralis);
            const bool regional = stage == Stage::thrummet && coralis;
            EXPECT_EQ(page.entries.size(), stage == Stage::egg ? 0u : regional ? 4u : 3u);
            EXPECT_EQ(page.type.empty(), stage == Stage::egg);
            EXPECT_EQ(page.type == "Ghost / Poison", growthRate(stage) == GrowthRate::mediumSlow);
            std::set<std::string_view> labels;
            for (const auto& entry : page.entries) {
                EXPECT_TRUE(labels.insert(entry.label).second) << entry.label;
            }
        }
    }
}

TEST(TheRegion, IsCoralisOnlyWhenExactlyThatIsChosen) {
    SimulatedDefaults defaults;
    EXPECT_EQ(currentRegion(defaults), Region::fernvale);
    for (const DefaultsValue& value : std::vector<DefaultsValue>{
             std::string("fernvale"), std::string("Coralis"), std::string(""), std::int64_t{1},
             true, std::vector<std::string>{"coralis"}}) {
        defaults.set("region", value);
        EXPECT_EQ(currentRegion(defaults), Region::fernvale);
    }
    defaults.set("region", std::string("coralis"));
    EXPECT_EQ(currentRegion(defaults), Region::coralis);
}

}  // namespace
}  // namespace quibbits
