#include <gtest/gtest.h>

#include "support/LivingCreature.h"

namespace quibbits {
namespace {

using Options = LivingCreature::Options;

/// A creature in a long, quiet sit at (480, 0), facing right.
struct Sitting : LivingCreature {
    explicit Sitting(Options options = {}) : LivingCreature(std::move(options)) {
        computer.movePointer({1400, 800});
        advance(20);  // whatever it noticed at first is long ago
        creature().stop([] {});
        pet().drag({480, 0});
        pet().face(true);
        creature().sit(25, [this] { creature().think(); });
        utterances.clear();
    }
    double head() { return 0.6 * pet().frame().height; }
    bool felt(Face face) const {
        return std::ranges::any_of(utterances, [&](auto& u) { return u.face == face; });
    }
    Rect shown() { return pet().sprite().model().contentsRect; }
};

TEST(ASittingCreature, FollowsThePointerWithinItsReachAndTurnsToIt) {
    Sitting life;
    life.computer.movePointer({480 - 100, life.head()});
    EXPECT_FALSE(life.pet().facesRight());
    life.computer.movePointer({480 + 12, life.head() + 100});
    EXPECT_FALSE(life.pet().facesRight()) << "so little to the side turns nobody";
    life.computer.movePointer({480 + 260, life.head()});
    EXPECT_FALSE(life.pet().facesRight()) << "260 points away is too far";
    life.computer.movePointer({480 + 259, life.head()});
    EXPECT_TRUE(life.pet().facesRight());
}

TEST(ASittingCreature, KeepsSittingWhileItIsWatchingButNotForEver) {
    Sitting life;
    const auto before = life.decisions.size();
    for (int i = 0; i < 29; ++i) {
        life.computer.movePointer({480.0 + 100 + i % 2, 100});
        life.advance(1);
    }
    EXPECT_EQ(life.decisions.size(), before) << "the sit of 25 seconds goes on";
    for (int i = 0; i < 4; ++i) {
        life.computer.movePointer({480.0 + 100 + i % 2, 100});
        life.advance(1);
    }
    EXPECT_GT(life.decisions.size(), before);
}

TEST(ACreatureThatHasGotUp, WalksOnUnderAPointerOverItsHead) {
    Sitting life;
    life.creature().stop([] {});
    Companion& creature = life.creature();
    creature.sit(1, [&] { creature.go({.to = {900, 0}, .speed = 60}, [] {}); });
    life.advance(2);
    const Image walking = std::get<Picture>(life.pet().sprite().model().content).image;
    ASSERT_EQ(walking, creature.a().walk.image);
    for (int i = 0; i < 20; ++i) {
        life.computer.movePointer(life.pet().position() + Vector{0, 200});
        life.advance(0.1);
        EXPECT_EQ(std::get<Picture>(life.pet().sprite().model().content).image, walking);
    }
}

TEST(APointerThatStays, IsWarmedToAtEachOfItsVisits) {
    Sitting life({.defaults = {{"chatter", false}}});
    for (int visits = 0; visits < 3; ++visits) {
        life.creature().stop([] {});
        life.creature().sit(25, [] {});
        // Overhead, so that its going is noticed too.
        int warm = 0;
        for (int i = 0; i < 100; ++i) {
            life.utterances.clear();
            life.computer.movePointer({480.0 + i % 2, life.head() + 150});
            life.advance(0.1);
            warm += life.felt(Face::happy);
        }
        EXPECT_EQ(warm, 1) << visits;
        life.computer.movePointer({480, 800});
        life.advance(20);
    }
}

TEST(APointerThatComes, IsMetWithCuriosityOrFright) {
    struct Row {
        const char* why;
        std::map<std::string, DefaultsValue> defaults;
        double fromX;
        Face face;
    };
    for (const auto& [why, defaults, fromX, face] : std::vector<Row>{
             {"slowly", {}, 700, Face::surprised},
             {"a stranger", {{"pet.friendship", 69.0}}, 700, Face::worried},
             {"a stranger, feelings off",
              {{"pet.friendship", 69.0}, {"relationship", false}},
              700,
              Face::surprised},
             {"to a timid one", {{"pet.nature", std::string("Timid")}}, 700, Face::worried},
             {"to a timid friend",
              {{"pet.nature", std::string("Timid")}, {"pet.friendship", 150.0}},
              700,
              Face::surprised},
         }) {
        Sitting life({.defaults = defaults});
        life.computer.movePointer({fromX, 100});
        EXPECT_TRUE(life.felt(face)) << why;
        EXPECT_EQ(life.utterances.size(), 1u) << why;
    }
}

TEST(APointerThatComes, FastStartlesAnybody) {
    Sitting life({.defaults = {{"pet.friendship", 250.0}}});
    const Point overhead{480, life.head() + 200};
    const Point away{1400, 800};
    life.computer.movePointer(overhead);  // noticed
    life.computer.movePointer(away);
    life.advance(14);
    life.computer.movePointer(overhead);  // too soon to be noticed again
    life.advance(2);
    life.computer.movePointer(overhead + Vector{1, 0});
    life.computer.movePointer(away);
    life.utterances.clear();
    life.advance(0.1);
    life.computer.movePointer({700, life.head()});
    EXPECT_TRUE(life.felt(Face::worried));
}

TEST(APointerThatStays, IsRecognizedAfterSixSeconds) {
    for (const double friendship : {200.0, 60.0}) {
        Sitting life({.defaults = {{"pet.friendship", friendship}}});
        for (int i = 0; i < 14; ++i) {
            life.computer.movePointer({600.0 + i % 2, 100});
            life.advance(0.5);
        }
        EXPECT_EQ(life.utterances.size(), 2u);
        EXPECT_EQ(life.utterances.back().face, Face::happy);
        EXPECT_EQ(life.utterances.back().caption.has_value(), friendship >= 70)
            << "a wary one only wonders";
    }
}

TEST(Petting, BuildsFriendshipOnceInAQuarterOfAnHour) {
    Sitting life({.defaults = {{"pet.friendship", 100.0}}});
    const auto pet = [&] {
        const Rect body = life.pet().frame();
        life.computer.movePointer(body.center());
        life.advance(0.1);
        life.computer.movePointer({1400, 800});
    };
    pet();
    EXPECT_EQ(life.creature().needs().friendship, 100) << "the launch counts as a petting";
    EXPECT_FALSE(life.pet().node().sublayers().empty());
    EXPECT_TRUE(life.felt(Face::happy));

    life.utterances.clear();
    life.advance(1);
    pet();
    EXPECT_TRUE(life.utterances.empty()) << "twice within 8 seconds is once";

    life.computer.runLoop.shiftClock(901);
    life.advance(9);
    life.creature().stop([] {});
    life.creature().sit(20, [] {});
    const double exp = life.creature().identity().exp;
    pet();
    EXPECT_EQ(life.creature().needs().friendship, 103) << "it knows Cheek Rub";
    life.advance(9);
    pet();
    EXPECT_EQ(life.creature().needs().friendship, 103) << "not again so soon";
    EXPECT_GT(life.creature().identity().exp, exp);
}

TEST(Petting, BreaksOffTheSitAndEndsInThinking) {
    Sitting life;
    const auto before = life.decisions.size();
    life.computer.movePointer(life.pet().frame().center());
    life.advance(3.2);
    EXPECT_EQ(life.decisions.size(), before);
    life.computer.movePointer({1400, 800});
    life.advance(0.3 + 2.1);
    EXPECT_EQ(life.decisions.size(), before + 1);
}

TEST(Petting, AShyOneStepsAwayAboutEveryOtherTime) {
    int fled = 0;
    for (std::uint64_t seed = 1; seed <= 40; ++seed) {
        Sitting life({.defaults = {{"pet.nature", std::string("Bashful")},
                                   {"pet.friendship", 199.0},
                                   {"greetings", true}},
                      .seed = seed});
        life.computer.movePointer(life.pet().frame().center() + Vector{3, 0});
        life.advance(3);
        fled += life.pet().position().x < 440;
    }
    EXPECT_GT(fled, 10);
    EXPECT_LT(fled, 30);
}

TEST(Greetings, SwitchedOffLeaveThePointerUnnoticed) {
    Sitting life({.defaults = {{"greetings", false}}});
    life.computer.movePointer({400, 60});
    life.computer.movePointer(life.pet().frame().center());
    life.advance(1);
    EXPECT_TRUE(life.utterances.empty());
    EXPECT_TRUE(life.pet().facesRight());
}

TEST(AGlance, LooksUpWhenAnotherApplicationComesForwardAndNotAgainForAWhile) {
    Sitting life;
    const Image idle = std::get<Picture>(life.pet().sprite().model().content).image;
    const auto shows = [&] { return std::get<Picture>(life.pet().sprite().model().content).image; };
    life.computer.bringToFront({.id = "editor", .process = 5});
    EXPECT_FALSE(shows() == idle);
    life.advance(1.3);
    EXPECT_TRUE(shows() == idle);
    life.computer.bringToFront({.id = "mail", .process = 6});
    EXPECT_TRUE(shows() == idle);
}

}  // namespace
}  // namespace quibbits
