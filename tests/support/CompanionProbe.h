#pragma once
// Begins what chance would seldom choose, and looks at what a creature should have put back when it
// is done.

#include <gtest/gtest.h>

#include <string>

#include "app/AppDelegate.h"
#include "creature/Companion.h"
#include "sim/SimulatedComputer.h"

namespace quibbits {

class CompanionProbe {
public:
    /// To begin with other needs, experience or an offer than its life has brought it.
    static Needs::Values& needs(Companion& who) { return who.needs_.values_; }
    static Identity& identity(Companion& who) { return who.identity_; }
    static Presence& presence(Companion& who) { return who.presence_; }
    static std::optional<Evolution>& offer(Companion& who) { return who.pendingEvolution_; }

    /// Lets it decide for the intent, as it would with what it sees.
    static void begin(Companion& who, Intent intent, Done done) {
        Companion::Surroundings seen{.spots = who.pet().stage().openSpots()};
        for (const Ground& spot : seen.spots) {
            if (!spot.solid && !seen.file) seen.newFile = seen.file = spot;
        }
        seen.cursorSpot = spotNearCursor(who.pet().position(), who.habitat_.pointer(), seen.spots);
        who.act(intent, seen, std::move(done));
    }
};

/// Nothing of a routine is left: the body is whole, in its place and reachable, the pointer is the
/// user's, and nothing is drawn beside the body but what it says.
inline void expectAtRest(SimulatedComputer& computer, AppDelegate& app, Companion& who,
                         const std::string& after) {
    SCOPED_TRACE(after);
    const Pet& pet = who.pet();
    const LayerProperties sprite = pet.sprite().presentation();
    const LayerProperties node = pet.node().presentation();
    EXPECT_TRUE(!pet.sprite().animation("bob") || pet.isAirborne());
    EXPECT_EQ(pet.sprite().model().position, Point{});
    EXPECT_EQ(sprite.opacity, 1);
    EXPECT_EQ(sprite.transform, pet.facesRight() ? Transform{} : Transform::mirrored());
    EXPECT_EQ(node.transform, Transform{});
    EXPECT_EQ(node.opacity, 1);
    EXPECT_FALSE(node.hidden);
    EXPECT_EQ(pet.node().mask(), nullptr);
    EXPECT_EQ(pet.figure().mask(), nullptr);
    EXPECT_TRUE(pet.sprite().sublayers().empty());
    EXPECT_EQ(pet.node().sublayers().size(), 4u) << "figure, bubble, panel and thought";
    EXPECT_EQ(pet.isInteractive(), who.presence().isOut() && !who.presence().isBusy());
    EXPECT_FALSE(computer.pointer.hidden);
    EXPECT_EQ(pet.node().superlayer()->sublayers().size(), app.party().size()) << "no shades";
    EXPECT_FALSE(app.ballFX()->isPlaying());
}

}  // namespace quibbits
