// Each thing that a creature can decide to do, begun by hand: what it costs, shows and plays, how
// long it takes, and that nothing of it is left.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/CompanionProbe.h"
#include "support/LivingCreature.h"
#include "support/Watcher.h"

namespace quibbits {
namespace {

struct Doer {
    const char* store = "pet";
    const char* stage = "sparrel";
    const char* form = "";
};
constexpr Doer walker;
constexpr Doer coralian{"pet", "thrummet", "coralis"};
constexpr Doer ghost{"umbrool", "umbrool"};

struct Row {
    Intent intent;
    Doer who = walker;
    std::optional<Face> thinks;  // in the bubble with which it begins
    bool thinksAgain = false;    // though it does the same again
    double energy = 0;           // gained
    double boredom = 0;
    bool earns = false;  // experience beyond nothing
    Range takes{0, 400};
    std::vector<std::string> plays;
};

const std::vector<Row> rows{
    {Intent::nap, walker, Face::sigh, false, 0.5, 0, false, {31, 93}, {"Sleep", "Wake"}},
    {Intent::rest, walker, Face::sigh, false, 0.35, 0, false, {10, 18}, {"Idle"}},
    {Intent::sit, walker, {}, false, 0.03, 0.12, false, {5, 10}, {"Idle"}},
    {Intent::askForBerry, walker, Face::worried, true, 0, 0, false, {5, 40}, {"Hop", "Idle"}},
    {Intent::inspect, walker, Face::surprised, true, -0.1, 0, false, {6, 60}, {"Nod", "Idle"}},
    {Intent::explore, walker, Face::inspired, false, -0.15, 0, false, {3, 60}, {"Idle"}},
    {Intent::patrol, walker, Face::determined, false, 0, 0, false, {3, 40}, {"Walk", "Idle"}},
    {Intent::visit, walker, Face::happy, false, 0, 0, false, {3, 40}, {"Walk", "Idle"}},
    {Intent::play, walker, Face::joyous, false, -0.05, 0, true, {2, 12}, {"Idle"}},
    {Intent::dance, walker, Face::joyous, false, 0, 0, false, {1, 8}, {"Idle"}},
    {Intent::chargeUp, walker, Face::determined, false, 0, 0, false, {1.5, 3}, {"Charge", "Shock"}},
    {Intent::surfLaps, coralian, Face::joyous, false, 0, 0, false, {3, 30}, {"Walk", "Idle"}},
    {Intent::levitate, coralian, Face::inspired, false, -0.05, 0, true, {8, 60}, {"Walk", "Idle"}},
    {Intent::teleport, coralian, Face::inspired, false, -0.03, 0, false, {3.5, 7}, {"Idle"}},
    {Intent::daydream, walker, Face::happy, true, 0, 0, false, {6, 10}, {"Idle"}},
    {Intent::yawn, walker, Face::sigh, true, 0.05, 0, false, {4, 9}, {"Idle"}},
    {Intent::sniff, walker, {}, false, 0, 0, false, {4, 12}, {"Nod", "Idle"}},
    {Intent::hum, walker, Face::joyous, true, 0, 0, false, {5, 8}, {"Nod", "Idle"}},
    {Intent::bask, walker, Face::happy, true, 0.1, 0, false, {15, 31}, {"Sleep", "Wake"}},
    {Intent::fly, ghost, Face::joyous, false, -0.06, 0, true, {5, 60}, {"Walk"}},
    {Intent::phase, ghost, Face::happy, true, -0.05, 0, true, {8, 60}, {"Idle", "Sink"}},
    {Intent::lick, ghost, Face::joyous, true, -0.03, 0, true, {5, 40}, {"Idle"}},
    {Intent::snatch, ghost, Face::happy, true, 0, 0, false, {20, 80}, {"Pull"}},
    {Intent::clone, ghost, Face::joyous, true, -0.04, 0, true, {5, 9}, {"Idle"}},
    {Intent::shadowGag, ghost, Face::surprised, true, -0.04, 0, true, {6, 20}, {"Idle", "Cringe"}},
    {Intent::prank, ghost, {}, false, -0.04, 0, true, {2, 40}, {}},
};

class Doing : public LivingCreature {
public:
    explicit Doing(const Row& row, std::uint64_t seed)
        : LivingCreature(options(row, seed), DrawnSheets::ofTrickster()), row_(row) {
        advance(5);
        creature().stop([] {});
        advance(8);
        CompanionProbe::begin(creature(), other(row.intent), [] {});
        creature().stop([] {});
    }
    /// Does it once, and tells how long that took.
    Seconds once() {
        Companion& who = creature();
        CompanionProbe::needs(who).energy = 0.5;
        CompanionProbe::needs(who).boredom = 0.2;
        CompanionProbe::identity(who).exp = expForLevel(growthRate(who.stage()), 50) + 10;
        experience = who.identity().exp;
        computer.movePointer({pet().position().x < 720 ? 1100.0 : 300.0, 500});
        advance(0.1);
        utterances.clear();
        watcher.played.clear();
        bool done = false;
        const Instant began = computer.runLoop.now();
        CompanionProbe::begin(who, row_.intent, [&] { done = true; });
        while (!done && computer.runLoop.now() < began + 400) {
            watcher.lookOn(0.05);
        }
        return done ? computer.runLoop.now() - began : 1e9;
    }
    Watcher watcher{*this};
    double experience = 0;  // before it did it

private:
    static LivingCreature::Options options(const Row& row, std::uint64_t seed) {
        const std::string store = row.who.store;
        LivingCreature::Options made{
            .store = store,
            .stage = row.who.stage,
            .defaults = {{"chatter", false},
                         {"overApps", store == "umbrool"},  // icons are ground where no window is
                         {store + ".exp", 125010.0}},
            .seed = seed,
        };
        if (*row.who.form) made.defaults[store + ".form"] = std::string(row.who.form);
        made.prepare = [haunts = store == "umbrool"](SimulatedComputer& c) {
            c.fileBrowser.icons = {{"file", {600, 40, 64, 64}}};
            if (!haunts) return;
            c.putWindow("front", {.process = 9, .frame = Rect{500, 200, 700, 400}});
            c.bringToFront({.id = "editor", .process = 9});
        };
        return made;
    }
    static Intent other(Intent intent) {
        return intent == Intent::sit ? Intent::rest : Intent::sit;
    }
    const Row& row_;
};

TEST(EveryIntent, IsInTheTable) {
    ASSERT_EQ(rows.size(), intentCount);
    for (std::size_t i = 0; i < intentCount; ++i) EXPECT_EQ(rows[i].intent, static_cast<Intent>(i));
}

TEST(EveryIntent, CostsShowsAndPlaysWhatItShouldAndLeavesNothing) {
    for (const Row& row : rows) {
        for (const std::uint64_t seed : {1u, 2u, 3u}) {
            const std::string what =
                std::string(rawValue(row.intent)) + ", seed " + std::to_string(seed);
            Doing life(row, seed);
            Companion& who = life.creature();
            for (int times = 0; times < 2; ++times) {
                SCOPED_TRACE(what + ", time " + std::to_string(times));
                const Seconds took = life.once();
                EXPECT_GE(took, row.takes.lo - 0.1);
                EXPECT_LE(took, row.takes.hi + 0.1);
                const double walked = row.intent == Intent::patrol ? 0.1 : 0;
                const double climbed = row.intent == Intent::explore ? 0.1 : 0;
                EXPECT_NEAR(who.needs().energy, 0.5 + row.energy, 1e-9 + walked + climbed);
                EXPECT_NEAR(who.needs().boredom, 0.2 + row.boredom, 1e-9);
                EXPECT_EQ(who.identity().exp > life.experience, row.earns);
                const bool thinks = row.thinks && (times == 0 || row.thinksAgain);
                if (thinks) {
                    ASSERT_FALSE(life.utterances.empty());
                    EXPECT_EQ(life.utterances.front().face, *row.thinks);
                } else if (row.thinks && !life.utterances.empty()) {
                    EXPECT_NE(life.utterances.front().seconds, 2.2) << "the same thought again";
                }
                if (row.intent == Intent::teleport) {
                    const double pointer = life.computer.pointer.place.x;
                    EXPECT_EQ(life.pet().facesRight(), life.pet().position().x <= pointer);
                }
                for (const std::string& anim : row.plays) {
                    EXPECT_TRUE(life.watcher.played.contains(anim)) << anim;
                }
                // It still says its last word, sparks live out, and wet spots dry up.
                life.advance(4);
                for (int i = 0; i < 60 && life.app->ballFX()->isPlaying(); ++i) life.advance(5);
                life.advance(12);
                expectAtRest(life.computer, *life.app, who, what);
                who.stop([] {});
                life.advance(8);
            }
        }
    }
}

}  // namespace
}  // namespace quibbits
