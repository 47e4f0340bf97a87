// The guide, the reasons and the credits, from records made by hand.

#include <gtest/gtest.h>

#include <algorithm>

#include "settings/screens/Credits.h"
#include "settings/screens/Screens.h"
#include "sim/SimulatedComputer.h"
#include "support/DrawnSheets.h"
#include "support/FlatText.h"

namespace quibbits {
namespace {

using Texts = std::vector<std::string>;
using screens::GuidePage;

PetStats someone(Stage stage) {
    return {.name = displayName(stage),
            .gender = "♀",
            .nature = *Nature::named("Adamant"),
            .ability = {"Static", "Tingles."},
            .stage = stage,
            .level = 12,
            .friendship = 77.9};
}

class Guide : public testing::Test {
protected:
    views::View page(const PetStats& stats, GuidePage page, const std::string& id = "pet",
                     std::optional<std::string> form = std::nullopt) {
        const PetControls controls{.id = id, .stats = [stats] { return stats; }};
        return screens::guide(computer_.computer(), controls,
                              {.guide = page, .form = std::move(form)});
    }
    static bool shows(const views::View& view, const std::string& text) {
        const Texts all = views::texts(view);
        return std::ranges::find(all, text) != all.end();
    }
    static std::string valueOf(const views::View& view, const std::string& title) {
        if (const auto* fact = view.as<views::Fact>(); fact && fact->title == title) {
            return fact->value;
        }
        for (const auto& child : view.children) {
            if (auto value = valueOf(child, title); !value.empty()) return value;
        }
        return {};
    }
    static double opacityOf(const views::View& view, const std::string& chip) {
        return views::find(view, "chip " + chip)->opacity;
    }

    DrawnSheets sheets_ = DrawnSheets::ofWalker();
    FlatText text_;
    SimulatedComputer computer_{{}, sheets_, text_};
};

TEST_F(Guide, LightsTheStagesThatWereReached) {
    const auto view = page(someone(Stage::sparrel), GuidePage::evolution);
    EXPECT_EQ(opacityOf(view, "Egg"), 1);
    EXPECT_EQ(opacityOf(view, "Sparrel"), 1);
    EXPECT_EQ(opacityOf(view, "Thrummet"), 0.5);
    EXPECT_EQ(opacityOf(view, "Coralian Thrummet"), 0.5);

    PetStats regional = someone(Stage::thrummet);
    regional.coralis = true;
    const auto there = page(regional, GuidePage::evolution);
    EXPECT_EQ(opacityOf(there, "Coralian Thrummet"), 1);
    EXPECT_EQ(opacityOf(there, "Thrummet"), 0.5) << "the other form of its own stage";
    EXPECT_EQ(opacityOf(page(someone(Stage::thrummet), GuidePage::evolution), "Thrummet"), 1);

    const auto ghost = page(someone(Stage::gloamer), GuidePage::evolution, "umbrool");
    EXPECT_EQ(opacityOf(ghost, "Gloamer"), 1);
    EXPECT_EQ(opacityOf(ghost, "Umbrool"), 0.5);
}

TEST_F(Guide, TellsHowFarTheNextStageIs) {
    const auto value = [&](Stage stage, const std::string& title, const std::string& id = "pet") {
        return valueOf(page(someone(stage), GuidePage::evolution, id), title);
    };
    EXPECT_EQ(value(Stage::mizzle, "Mizzle → Sparrel"), "77 / 220");
    EXPECT_EQ(value(Stage::sparrel, "Mizzle → Sparrel"), "");
    EXPECT_EQ(value(Stage::sparrel, "Sparrel → Thrummet"), "Lv 12 / 20");
    EXPECT_EQ(value(Stage::wispul, "Wispul → Gloamer", "umbrool"), "Lv 12 / 25");
    EXPECT_EQ(value(Stage::gloamer, "Gloamer → Umbrool", "umbrool"), "Ready!");
    PetStats ready = someone(Stage::sparrel);
    ready.canEvolve = true;
    EXPECT_EQ(valueOf(page(ready, GuidePage::evolution), "Sparrel → Thrummet"), "Ready!");
    EXPECT_EQ(value(Stage::egg, "Region"), "Fernvale");
}

TEST_F(Guide, KeepsAnEggsSecrets) {
    const auto evolution = page(someone(Stage::egg), GuidePage::evolution);
    EXPECT_EQ(views::find(evolution, "fieldbook"), nullptr);
    const auto traits = page(someone(Stage::egg), GuidePage::traits);
    EXPECT_EQ(valueOf(traits, "Gender"), "?");
    EXPECT_EQ(valueOf(traits, "Shiny"), "?");
    EXPECT_TRUE(shows(traits, "Nature · set when it hatches"));
    EXPECT_EQ(valueOf(page(someone(Stage::egg), GuidePage::growth), "Real levels, 1 to 100"), "");
}

TEST_F(Guide, TellsTheTraits) {
    const auto traits = page(someone(Stage::sparrel), GuidePage::traits);
    EXPECT_EQ(valueOf(traits, "Gender"), "♀");
    EXPECT_EQ(valueOf(traits, "Shiny"), "No");
    EXPECT_EQ(valueOf(traits, "Shimmerpox"), "Never");
    const std::string effect = Nature::named("Adamant")->effect();
    EXPECT_TRUE(shows(traits, effect + " Likes Spicy berries, dislikes Dry."));
    EXPECT_TRUE(shows(traits,
                      "1 in 4,096 Eggs. Different colours, stars at hatching, ★ by its "
                      "name."));
    EXPECT_EQ(valueOf(traits, "Lonely"), "+Attack −Defense");
    EXPECT_EQ(valueOf(traits, "Hardy"), "Neutral");
    EXPECT_EQ(views::find(traits, "natures")->children.size(), 25u);
    EXPECT_EQ(views::find(traits, "regional"), nullptr);

    PetStats neutral = someone(Stage::sparrel);
    neutral.nature = Nature::neutral();
    EXPECT_TRUE(shows(page(neutral, GuidePage::traits), Nature::neutral().effect()));
}

TEST_F(Guide, ComparesTheGrowthRates) {
    const auto growth = page(someone(Stage::wispul), GuidePage::growth, "umbrool");
    EXPECT_TRUE(shows(growth,
                      "Medium Slow growth: Lv 100 takes 1,059,860 EXP in total, as in the "
                      "games."));
    EXPECT_TRUE(shows(growth, "Lv 100 at 1,000,000 EXP"));
    EXPECT_EQ(valueOf(growth, "Medium Fast"), "1× pace");
    EXPECT_EQ(valueOf(growth, "Erratic"), "1.7× pace");
    EXPECT_TRUE(shows(growth, "Friendship · 77 / 255"));
}

TEST_F(Guide, TicksTheMovesOfItsOwnFormOnly) {
    PetStats stats = someone(Stage::mizzle);
    stats.known = Growth::known(Stage::mizzle, 12, false);
    const auto ticks = [](const views::View& view) {
        const auto count = [](const auto& self, const views::View& v) -> int {
            const auto* fact = v.as<views::Fact>();
            int n = fact && fact->symbol == "checkmark.circle.fill" ? 1 : 0;
            for (const auto& child : v.children) n += self(self, child);
            return n;
        };
        return count(count, view);
    };
    const auto own = page(stats, GuidePage::moves);
    EXPECT_EQ(ticks(own), static_cast<int>(stats.known.size()));
    EXPECT_TRUE(shows(own, "Mizzle (yours)"));
    EXPECT_TRUE(shows(own, "Mizzle's moves"));
    const auto other = page(stats, GuidePage::moves, "pet", "thrummet-coralis");
    EXPECT_EQ(ticks(other), 0);
    EXPECT_TRUE(shows(other, "Coralian Thrummet's moves"));
    EXPECT_TRUE(shows(page(stats, GuidePage::moves, "pet", "nonsense"), "Mizzle's moves"));
}

TEST(TheReasons, AreShownWithEveryFactor) {
    Option played{.intent = Intent::play, .score = 1.25};
    played.reasons.add("bored", 0.5);
    played.reasons.add("likes you", 2.5);
    const PetControls controls{.id = "pet", .why = [&] {
                                   return Why{.choice = Intent::play,
                                              .at = Date{100},
                                              .options = {played, {.intent = Intent::sit}},
                                              .needs = {{"Energy", 0.5}}};
                               }};
    const auto view = screens::why(controls, Date{107.9});
    const auto all = views::texts(view);
    for (const char* text : {"decided 7s ago", "1.25", "bored 0.50 × likes you 2.50", "Energy"}) {
        EXPECT_NE(std::ranges::find(all, text), all.end()) << text;
    }
    const auto* option = views::find(view, "option play");
    EXPECT_TRUE(option->children[0].as<views::Fact>()->strong);
    EXPECT_EQ(option->children[1].as<views::Meter>()->amount, 1)
        << "a full bar, and its true value";

    const PetControls undecided{.id = "pet", .why = [] { return Why{}; }};
    const auto nothing = views::texts(screens::why(undecided, Date{}));
    EXPECT_NE(std::ranges::find(nothing,
                                "It hasn't decided anything yet (an Egg, in its ball, or busy)."),
              nothing.end());
}

TEST(APreview, ShowsEveryDirectionForAWhile) {
    const auto anim = [](int frames, Seconds each, double feet) {
        Anim made = Anim::fromStrip(
            Image::fromArgb(10 * frames, 20, std::vector<Argb>(200 * frames, 0xff000000)),
            std::vector<int>(frames, 1), feet);
        made.duration = each * frames;
        return made;
    };
    EXPECT_TRUE(screens::preview({}).frames.empty());
    const auto two = screens::preview({anim(2, 0.125, 3), anim(2, 0.125, 7)});
    EXPECT_EQ(two.frames.size(), 16u) << "1.2 s are four whole runs of 0.25 s, for both";
    EXPECT_EQ(two.frames.back().image, 1);
    EXPECT_NEAR(two.frameTime, 0.125, 1e-9);
    // The foot line of the last of two directions stands at 22.
    EXPECT_EQ(two.place.width, 20);
    EXPECT_EQ(two.place.height, 40);
    EXPECT_NEAR(two.place.y + 40 * (20 * 0.5 - 7) / 20, 22, 1e-9);
    const auto three =
        screens::preview({anim(1, 0.1, 3), anim(1, 0.1, 5), anim(1, 0.1, 1), anim(1, 0.1, 9)});
    EXPECT_NEAR(three.place.y + 40 * (20 * 0.5 - 1) / 20, 22, 1e-9) << "of the third";
    EXPECT_EQ(screens::preview({anim(1, 5, 0)}).frames.size(), 1u) << "one run at least";
}

TEST(Credits, AreGroupedAndSorted) {
    const auto by = [](const char* artist, const char* contact, const char* set = "") {
        return Credit{.artist = artist, .contact = contact, .set = set};
    };
    const auto list = screens::artists({by("Zed", "one", "a"), by("Quibbits", ""), by("alpha", ""),
                                        by("Bravo", ""), by("Zed", "two", "b")});
    Texts names;
    for (const auto& artist : list) names.push_back(artist.name);
    EXPECT_EQ(names, (Texts{"alpha", "Bravo", "Zed", "Quibbits"}));
    EXPECT_EQ(list[2].contact, "one");
    EXPECT_EQ(list[2].entries.size(), 2u);
    EXPECT_EQ(list[2].entries[1].set, "b");

    using screens::creditLink;
    EXPECT_EQ(creditLink(" <https://example.org/a> "), "https://example.org/a");
    EXPECT_TRUE(creditLink("@someone.social")->ends_with("someone.social"));
    EXPECT_EQ(creditLink("@someone"), std::nullopt);
    EXPECT_EQ(creditLink("by post"), std::nullopt);
    EXPECT_EQ(creditLink("<>"), std::nullopt);
}

}  // namespace
}  // namespace quibbits
