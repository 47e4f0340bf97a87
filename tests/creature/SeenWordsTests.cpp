// What a creature says can be read: it stands in its panel for as long as it is meant to, and
// nothing that begins in the same instant takes its place.

#include <gtest/gtest.h>

#include <algorithm>

#include "support/CompanionProbe.h"
#include "support/LivingCreature.h"

namespace quibbits {
namespace {

using Defaults = std::map<std::string, DefaultsValue>;

class Speaker : public LivingCreature {
public:
    explicit Speaker(Options options)
        : LivingCreature(std::move(options), DrawnSheets::ofTrickster()) {}

    /// The words in the panel over its head, as they are seen now.
    std::string words() {
        std::string all;
        for (const LayerRef& part : pet().node().sublayers()) {
            if (part->sublayers().size() != 3 || part->presentation().opacity < 0.5) continue;
            const auto* typed = std::get_if<Text>(&part->sublayers()[1]->model().content);
            for (const TextRun& run : typed ? typed->text.runs : std::vector<TextRun>{}) {
                all += run.text;
            }
        }
        return all;
    }
    /// Whether one of the texts is seen whole for so long, within so many seconds.
    bool shows(const std::vector<std::string>& texts, Seconds lasting, Seconds within) {
        Seconds seen = 0;
        for (Seconds passed = 0; passed < within && seen < lasting; passed += 0.1) {
            advance(0.1);
            const std::string now = words();
            const bool there = std::ranges::any_of(texts, [&](const std::string& each) {
                return now.find(each) != std::string::npos;
            });
            seen = there ? seen + 0.1 : 0;
        }
        return seen >= lasting;
    }
    Point body() { return pet().frame().center(); }
    void feed(Item item) {
        app->stage()->itemDragMoved(body());
        computer.movePointer(body());
        EXPECT_TRUE(
            computer.dropOnStage({.location = body(), .item = std::string(rawValue(item))}));
        app->stage()->itemDragMoved(std::nullopt);
        computer.movePointer(body() + Vector{2, 0});
    }
};

TEST(WhatItSays, IsSeenThoughADecisionFollowsAtOnce) {
    struct Row {
        std::vector<std::string> words;
        LivingCreature::Options options;
        Seconds within = 10;
        std::function<void(Speaker&)> begin = [](Speaker&) {};
    };
    const LocalTime night{.year = 2026, .month = 3, .day = 2, .hour = 22};
    const double almostGrown = expForLevel(growthRate(Stage::mizzle), 11) - 0.5;
    for (const auto& [words, options, within, begin] : std::vector<Row>{
             {{"Good morning!"}, {.defaults = {{"pet.greeted", Date{0}}}}},
             {{"The night is mine…"}, {.store = "umbrool", .stage = "gloamer", .begin = night}},
             {{"*yawn* Fully charged!", "Good nap!"},
              {.defaults = {{"pet.energy", 0.05}, {"pet.hunger", 0.1}}},
              400},
             {{"is ready to evolve! Right-click it to choose."},
              {.stage = "mizzle",
              .defaults = {{"pet.friendship", 254.0},
                           {"notifications", false},
                           {"pet.exp", almostGrown}}},
              600},
             {{"Good morning!"}, {.defaults = {{"pet.greeted", Date{0}}}, .battery = 3}},
             {{"So hot… I'm overheating…"},
              {},
              10,
              [](Speaker& s) { s.computer.setHeat(ThermalState::serious); }},
             {{"Thrummet learned"},
              {.defaults = {{"pet.exp", expForLevel(growthRate(Stage::sparrel), 20)}}},
              20,
              [](Speaker& s) { s.creature().evolve({.to = Stage::thrummet}); }},
         }) {
        for (std::uint64_t seed = 1; seed <= 12; ++seed) {
            auto each = options;
            each.seed = seed;
            Speaker life(each);
            life.advance(0.01);
            begin(life);
            EXPECT_TRUE(life.shows(words, 1, within)) << words.front() << ", seed " << seed;
        }
    }
}

TEST(WhatItSays, ComesOneAfterTheOtherWhereTwoGreetingsMeet) {
    for (std::uint64_t seed = 1; seed <= 6; ++seed) {
        Speaker ghost({.store = "umbrool",
                       .stage = "gloamer",
                       .defaults = {{"umbrool.greeted", Date{0}}},
                       .seed = seed,
                       .begin = {.year = 2026, .month = 3, .day = 2, .hour = 20}});
        EXPECT_TRUE(ghost.shows({"Good evening!"}, 1, 5)) << seed;
        EXPECT_TRUE(ghost.shows({"The night is mine…"}, 1, 200)) << seed;
    }
}

TEST(WhatItSays, OfItsHungerWaitsForTheWordsBeforeIt) {
    Speaker life({.defaults = {{"pet.greeted", Date{0}}, {"pet.hunger", 0.95}}});
    life.computer.movePointer({life.pet().position().x, 890});  // nowhere to walk to
    CompanionProbe::begin(life.creature(), Intent::askForBerry, [] {});
    EXPECT_TRUE(life.shows({"Good morning!"}, 1, 3));
    ASSERT_NE(life.utterances.back().face, Face::worried);
    life.advance(3);
    EXPECT_EQ(life.utterances.back().face, Face::worried) << "and then it asks";
}

TEST(WhatItSays, AtPlayIsSaidEvenWhereAFaceWasJustShown) {
    struct Row {
        Intent intent;
        bool shows;
    };
    for (const auto& [intent, shows] : {Row{Intent::play, true}, Row{Intent::dance, false}}) {
        Speaker life({.stage = "mizzle"});
        life.advance(60);
        life.advance(5);
        life.utterances.clear();
        // Of no use to it: a face without words.
        life.computer.dropOnStage({.location = life.body(), .item = "tetherLoop"});
        CompanionProbe::begin(life.creature(), intent, [] {});
        ASSERT_FALSE(life.utterances.empty());
        EXPECT_EQ(life.utterances.back().caption.has_value(), shows) << rawValue(intent);
        EXPECT_EQ(life.utterances.size(), shows ? 2u : 1u) << "no thought takes a face's place";
    }
}

TEST(WhatItSays, OfAGiftIsNotPettedAwayByTheHandThatGaveIt) {
    struct Row {
        const char* what;
        LivingCreature::Options options;
        Item item;
        std::string words;  // none: the face alone
        Face face;
    };
    for (const auto& [what, options, item, words, face] : std::vector<Row>{
             {"full",
              {.defaults = {{"pet.hunger", 0.05}, {"chatter", false}}},
              Item::blushum,
              "is full.",
              Face::sigh},
             {"of no use", {.stage = "mizzle"}, Item::tetherLoop, "", Face::surprised},
             {"not yet", {.stage = "mizzle"}, Item::stormPebble, "", Face::surprised},
         }) {
        Speaker life(options);
        life.advance(60);
        life.creature().stop([&] { life.creature().sit(20, [&] { life.creature().think(); }); });
        for (int times = 0; times < 2; ++times) {
            life.utterances.clear();
            life.feed(item);
            for (int i = 0; i < 15; ++i) {
                life.advance(0.1);
                life.computer.movePointer(life.body() + Vector{i % 2 * 3.0, 0});
            }
            ASSERT_FALSE(life.utterances.empty()) << what;
            EXPECT_EQ(life.utterances.back().face, face) << what << times;
            EXPECT_EQ(life.words().find(words) == std::string::npos, false) << what << times;
            life.computer.movePointer({0, 890});
            life.advance(9);
        }
    }
}

TEST(AShakenCreature, IsDizzyWhereverItIsPutDown) {
    for (const double height : {0.0, 20.0, 200.0}) {
        Speaker life({.defaults = {{"chatter", false}}});
        life.advance(30);
        for (int times = 0; times < 2; ++times) {
            life.utterances.clear();
            const Point grip = life.body();
            const double floor = life.pet().position().y;
            const double aside = grip.x - life.pet().position().x;
            life.computer.movePointer(grip);
            life.computer.press(MouseButton::left);
            for (int i = 0; i < 10; ++i) {
                life.advance(1);
                life.computer.movePointer(grip + Vector{i % 2 == 0 ? 60.0 : 0.0, 100});
            }
            life.computer.movePointer({life.pet().position().x + aside, grip.y + height});
            EXPECT_NEAR(life.pet().position().y, floor + height, 1e-6);
            life.computer.release(MouseButton::left);
            life.computer.movePointer(life.computer.pointer.place + Vector{1, 0});
            EXPECT_TRUE(life.shows({"is dizzy…"}, 2, 4)) << height << ", " << times;
            EXPECT_FALSE(life.hasSaid("Hehe! My cheeks are sparking!"));
            life.computer.movePointer({0, 890});
            life.advance(130);
        }
    }
}

}  // namespace
}  // namespace quibbits
