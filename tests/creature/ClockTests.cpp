// A wall clock that is set does nothing to a creature's life.

#include <gtest/gtest.h>

#include "support/LivingCreature.h"

namespace quibbits {
namespace {

class UnderASetClock : public ::testing::TestWithParam<double> {
protected:
    /// A creature that sits, watched by a pointer close to it.
    static void settle(LivingCreature& life) {
        life.advance(20);
        life.creature().stop([&] { life.creature().sit(5, [&] { life.creature().think(); }); });
        life.advance(0.1);
        life.computer.movePointer(life.pet().position() + Vector{150, 60});
        life.advance(0.1);
    }
    void setClock(LivingCreature& life) { life.computer.runLoop.shiftClock(GetParam()); }
};

TEST_P(UnderASetClock, ACreatureGoesOnDeciding) {
    LivingCreature life({});
    for (int times = 0; times < 2; ++times) {
        settle(life);
        setClock(life);
        life.computer.movePointer({0, 890});
        const std::size_t before = life.decisions.size();
        life.advance(120);
        EXPECT_GT(life.decisions.size(), before + 2);
    }
}

TEST_P(UnderASetClock, ItIsPettedAndWarmsToItsPersonAsAlways) {
    LivingCreature life({.defaults = {{"chatter", false}, {"pet.friendship", 120.0}}});
    settle(life);
    setClock(life);
    life.advance(10);
    for (int times = 0; times < 2; ++times) {
        const double before = life.creature().needs().friendship;
        life.advance(905);
        settle(life);
        setClock(life);
        life.utterances.clear();
        life.computer.movePointer(life.pet().frame().center());
        ASSERT_FALSE(life.utterances.empty());
        EXPECT_GE(life.creature().needs().friendship, before + 2);
        life.computer.movePointer({0, 890});
    }
}

TEST_P(UnderASetClock, ItEatsAndFindsItsFilesWorthAVisitAgain) {
    LivingCreature life({.defaults = {{"pet.hunger", 0.9}, {"pet.energy", 1.0}}});
    settle(life);
    life.computer.dropOnStage(
        {.location = life.pet().frame().center(), .item = std::string("azurine")});
    setClock(life);
    EXPECT_NEAR(life.creature().needs().hunger, 0.55, 0.02);
    life.advance(40);
    life.utterances.clear();
    settle(life);
    life.app->stage()->itemDragMoved(life.pet().frame().center());
    EXPECT_FALSE(life.utterances.empty()) << "it sees the next berry come";
}

TEST_P(UnderASetClock, ItMissesNobodyWhoIsThere) {
    LivingCreature life({});
    life.advance(60);
    setClock(life);
    const double missing = life.creature().why().needs[4].second;
    EXPECT_GE(missing, 0);
    EXPECT_LE(missing, 1);
    life.untilDecisions(3);
    EXPECT_GE(life.minds.back().neglect, 0);
    EXPECT_GE(life.creature().needs().energy, 0);
}

TEST_P(UnderASetClock, ItSeesNewFilesOnTheDesktopAndRestsItsPersonInTime) {
    LivingCreature life({.defaults = {{"breakReminder", true}, {"breakMinutes", 15}}});
    int breaks = 0;
    life.computer.notifications.onSend = [&](const NotificationRequest& each) {
        breaks += each.identifier == "break";
    };
    life.computer.fileBrowser.icons = std::vector<DesktopIcon>{};
    life.pet().stage().openSpots();
    setClock(life);
    life.computer.fileBrowser.icons = {{"new", {700, 10, 50, 50}}};
    life.advance(25);
    life.pet().stage().openSpots();
    EXPECT_EQ(life.pet().ground().size(), 2u);
    life.advance(840);
    EXPECT_EQ(breaks, 0);
    life.advance(80);
    EXPECT_EQ(breaks, 1);
}

INSTANTIATE_TEST_SUITE_P(ByHours, UnderASetClock,
                         ::testing::Values(-3600.0, 3600.0, -40000.0, 40000.0, -4e6));

}  // namespace
}  // namespace quibbits
