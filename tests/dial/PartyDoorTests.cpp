// One creature is out at a time, whatever is tapped when; played on panels that are painted.

#include <gtest/gtest.h>

#include "support/DialTap.h"
#include "support/LivingCreature.h"

namespace quibbits {
namespace {

class Party : public LivingCreature {
public:
    explicit Party(std::map<std::string, DefaultsValue> defaults, std::uint64_t seed = 1)
        : LivingCreature({.defaults = std::move(defaults), .seed = seed, .painting = true},
                         DrawnSheets::ofTrickster()) {
        advance(1);
    }
    Companion& sparrel() { return *app->party()[0]; }
    Companion& umbrool() { return *app->party()[1]; }
    void tap(int slot) { tapSlot(computer, slot); }
    /// Lets time pass and looks on.
    void watch(Seconds seconds) {
        for (int i = 0; i < seconds * 20; ++i) {
            advance(0.05);
            ASSERT_FALSE(sparrel().presence().isOut() && umbrool().presence().isOut())
                << computer.runLoop.now();
        }
    }
    /// Nobody is on the way any more, and that one is out: 0, 1, or nobody with -1.
    void expectOut(int slot) {
        EXPECT_FALSE(sparrel().presence().isBusy() || umbrool().presence().isBusy());
        EXPECT_EQ(sparrel().presence().isOut(), slot == 0);
        EXPECT_EQ(umbrool().presence().isOut(), slot == 1);
        EXPECT_EQ(sparrel().pet().node().model().hidden, slot != 0);
        EXPECT_EQ(umbrool().pet().node().model().hidden, slot != 1);
    }
};

const std::map<std::string, DefaultsValue> twoEggs{{"pet.stage", std::string("egg")}};
const std::map<std::string, DefaultsValue> bothGrown{{"umbrool.stage", std::string("gloamer")}};

TEST(TheParty, LetsTheSecondOfTwoEggsHatchWhenTheFirstHasGoneIn) {
    Party party(twoEggs);
    party.tap(0);
    party.watch(2);
    party.tap(1);
    EXPECT_FALSE(party.umbrool().presence().isBusy()) << "it waits";
    party.watch(30);
    party.expectOut(1);
    EXPECT_EQ(party.sparrel().stage(), Stage::mizzle);
    EXPECT_EQ(party.umbrool().stage(), Stage::wispul);
    party.tap(0);
    party.watch(30);
    party.expectOut(0);
    party.tap(1);
    party.watch(30);
    party.expectOut(1);
}

TEST(TheParty, WaitsForWhoeverIsInTheMiddleOfSomething) {
    struct Row {
        const char* what;
        std::function<void(Party&)> begin;
    };
    for (const auto& [what, begin] : std::vector<Row>{
             {"evolving", [](Party& p) { p.sparrel().evolve({.to = Stage::thrummet}); }},
             {"coming out",
              [](Party& p) {
                  p.tap(0);
                  p.watch(5);
                  p.tap(0);
              }},
             {"hatching",
              [](Party& p) {
                  p.sparrel().restart();
                  p.tap(0);
              }},
         }) {
        Party party(bothGrown);
        begin(party);
        party.watch(1);
        party.tap(1);
        party.watch(0.2);
        EXPECT_TRUE(party.sparrel().presence().isBusy()) << what;
        EXPECT_FALSE(party.umbrool().presence().isBusy()) << what;
        party.watch(20);
        party.expectOut(1);
        EXPECT_EQ(party.computer.defaults.string("party.out"), "umbrool") << what;
    }
}

TEST(TheParty, LetsALaterTapReplaceTheOneThatIsWanted) {
    Party party(bothGrown);
    party.sparrel().evolve({.to = Stage::thrummet});
    party.watch(1);
    party.tap(1);
    party.watch(1);
    party.tap(0);  // it stays out after all
    party.watch(20);
    party.expectOut(0);

    party.tap(1);
    party.watch(0.5);
    party.tap(0);  // it is going in already, and comes out again
    party.watch(20);
    party.expectOut(0);
    EXPECT_EQ(party.computer.defaults.string("party.out"), "pet");
    EXPECT_EQ(party.umbrool().stage(), Stage::gloamer);

    party.tap(0);
    party.watch(0.5);
    party.tap(0);  // a second tap on the way in does nothing
    party.watch(20);
    party.expectOut(-1);
}

TEST(TheParty, KeepsWhoeverWasSentOutDuringACallWhenTheCallEnds) {
    Party party(bothGrown);
    for (int calls = 0; calls < 3; ++calls) {
        party.computer.setCameras({true});
        party.watch(4);
        party.expectOut(-1);
        party.tap(1);
        party.watch(6);
        party.expectOut(1);
        party.computer.setCameras({false});
        party.watch(10);
        party.expectOut(1);
        party.tap(0);
        party.watch(10);
        party.expectOut(0);
    }
}

TEST(TheParty, ForgetsACallOnceItIsOver) {
    for (const Seconds sentOut : {1.0, 10.0}) {  // still on its way at the end of the call, or not
        Party party(bothGrown);
        party.computer.setCameras({true});
        party.watch(5);
        party.tap(0);
        party.watch(sentOut);
        party.computer.setCameras({false});
        party.watch(10);
        party.expectOut(0);
        party.tap(0);
        party.watch(20);
        party.expectOut(-1);
    }
}

TEST(TheParty, RemembersWhoStayedWhenTheUserChangedTheirMind) {
    Party party(bothGrown);
    party.sparrel().evolve({.to = Stage::thrummet});
    party.watch(1);
    party.tap(1);
    party.watch(1);
    party.tap(0);
    party.watch(20);
    party.quit();
    party.launch();
    party.watch(1);
    party.expectOut(0);
}

TEST(TheParty, BringsBackWhoeverHidFromACallThatWasOverBeforeItWasIn) {
    Party party(bothGrown);
    for (int calls = 0; calls < 3; ++calls) {
        party.computer.setCameras({true});
        party.watch(0.5);
        EXPECT_TRUE(party.sparrel().presence().isBusy());
        party.computer.setCameras({false});
        party.watch(10);
        party.expectOut(0);
    }
}

TEST(TheParty, HasNobodyOutTwiceWhateverIsTappedWhen) {
    for (std::uint64_t seed = 1; seed <= 12; ++seed) {
        Party party(seed % 2 == 0 ? bothGrown : twoEggs, seed);
        Random chance(seed);
        for (int i = 0; i < 60 && !::testing::Test::HasFailure(); ++i) {
            Companion& who = *party.app->party()[chance.index(2)];
            switch (chance.index(8)) {
                case 0: party.computer.setCameras({chance.coin()}); break;
                case 1: who.evolve({.to = line(who.firstStage())[1 + chance.index(2)]}); break;
                case 2:
                    if (chance.index(4) == 0) who.restart();
                    break;
                case 3:
                    party.app->open({chance.coin() ? "quibbits://focus" : "quibbits://unfocus"});
                    break;
                default: party.tap(static_cast<int>(chance.index(2))); break;
            }
            party.watch(chance.uniform(0.05, 6));
        }
        party.app->open({"quibbits://unfocus"});
        party.computer.setCameras({false});
        party.watch(20);
        EXPECT_FALSE(party.sparrel().presence().isBusy() || party.umbrool().presence().isBusy())
            << seed;
        // Tricks leave wet spots and prints for a while.
        for (int i = 0; i < 60 && party.app->ballFX()->isPlaying(); ++i) party.watch(10);
        EXPECT_FALSE(party.app->ballFX()->isPlaying()) << seed;
    }
}

}  // namespace
}  // namespace quibbits
