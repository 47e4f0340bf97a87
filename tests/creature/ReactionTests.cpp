#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "creature/Reactions.h"

namespace quibbits {
namespace {

Presence on(const std::function<void(Presence&)>& happened) {
    Presence presence;
    presence.put(true);
    happened(presence);
    return presence;
}

TEST(AChangeOfPower, MeansSomethingToWhoIsOutAndInNobodysHand) {
    using Kind = PowerReaction;
    const PowerChange plugged{.isCharging = true, .before = Mood::happy, .now = Mood::charging};
    const PowerChange unplugged{.wasCharging = true, .before = Mood::charging, .now = Mood::happy};
    const PowerChange emptied{.before = Mood::tired, .now = Mood::fainted};
    const PowerChange tired{.before = Mood::happy, .now = Mood::tired};
    const PowerChange stillCharging{
        .wasCharging = true, .isCharging = true, .before = Mood::charging, .now = Mood::charging};
    const Presence free = on([](Presence&) {});
    const Presence fainted = on([](Presence& p) { p.faint(); });
    struct Row {
        PowerChange change;
        Presence presence;
        Kind reaction;
    };
    for (const auto& [change, presence, reaction] : std::vector<Row>{
             {plugged, free, Kind::drawPower},
             {plugged, fainted, Kind::drawPower},
             {unplugged, free, Kind::nod},
             {stillCharging, free, Kind::none},
             {emptied, free, Kind::faint},
             {emptied, fainted, Kind::none},
             {tired, free, Kind::thinkAnew},
             {tired, fainted, Kind::recover},
             {tired, on([](Presence& p) { p.doze(); }), Kind::thinkAnew},
             {plugged, on([](Presence& p) { p.pickUp(); }), Kind::none},
             {plugged, on([](Presence& p) { p.beginToEvolve(); }), Kind::none},
             {emptied, on([](Presence& p) { p.call(); }), Kind::none},
             {emptied, Presence{}, Kind::none},
         }) {
        EXPECT_EQ(reactTo(change, presence, false), reaction);
        EXPECT_EQ(reactTo(change, presence, true), Kind::none) << "the user wants quiet";
    }
}

TEST(APresence, TellsWhoIsWhereOnTheWayInAndOut) {
    Presence who;
    EXPECT_FALSE(who.isOut() || who.isBusy());
    who.comeOut();
    EXPECT_TRUE(who.isBusy() && who.isComingOut() && !who.isOut() && !who.isAtHand());
    who.arrive();
    EXPECT_TRUE(who.isOut() && !who.isBusy() && who.isReady());
    who.call();
    EXPECT_TRUE(who.isOut() && who.isBusy() && who.isGoingIn() && !who.isDrawnIn());
    who.drawIn();
    EXPECT_TRUE(who.isOut() && who.isGoingIn() && who.isDrawnIn());
    who.goneIn();
    EXPECT_FALSE(who.isOut() || who.isBusy() || who.isGoingIn());
    who.put(true);
    who.doze();
    EXPECT_TRUE(who.isAtHand() && !who.isFree());
    EXPECT_TRUE(who.wake());
    EXPECT_FALSE(who.wake());
    who.faint();
    EXPECT_TRUE(who.isFree() && !who.isReady());
}

}  // namespace
}  // namespace quibbits
