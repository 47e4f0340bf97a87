// Whatever may happen around a creature, one row each: what it shows and plays, what it costs or
// brings, and that all is as before when it is over. Each happens twice.

#include <gtest/gtest.h>

#include "support/CompanionProbe.h"
#include "support/LivingCreature.h"
#include "support/Watcher.h"

namespace quibbits {
namespace {

using Life = LivingCreature;

struct Row {
    const char* what;
    std::function<void(Life&)> happens;
    std::optional<Face> shows;
    std::vector<std::string> plays;
    std::function<void(Life&)> ends = [](Life&) {};
    std::optional<Face> thenShows;
    std::vector<std::string> thenPlays;
    std::string notification;  // that goes out
    Seconds lasts = 6;
};

void word(Life& life, const char* text) {
    life.app->open({std::string("quibbits://") + text});
}
Point body(Life& life) {
    return life.pet().frame().center();
}
void pointAt(Life& life) {
    life.computer.movePointer(body(life));
    life.computer.movePointer(body(life) + Vector{2, 0});
}
void pointAway(Life& life) {
    life.computer.movePointer({0, 890});
}
void feed(Life& life) {
    CompanionProbe::needs(life.creature()).hunger = 0.5;
    life.computer.dropOnStage({.location = body(life), .item = std::string("azurine")});
}
void carry(Life& life) {
    pointAt(life);
    life.utterances.clear();  // it was petted first
    life.computer.press(MouseButton::left);
    life.computer.movePointer(life.computer.pointer.place + Vector{0, 100});
}
void letGo(Life& life) {
    life.computer.release(MouseButton::left);
    pointAway(life);
}
void battery(Life& life, int level, bool charging) {
    life.computer.setBattery(level, charging);
}

const std::vector<Row> rows{
    {"celebrate", [](Life& l) { word(l, "celebrate"); }, Face::joyous, {"Shock", "Pose"}},
    {"failed",
     [](Life& l) { word(l, "failed"); },
     Face::pain,
     {"Faint", "Wake"},
     {},
     {},
     {},
     "",
     12},
    {"done", [](Life& l) { word(l, "done"); }, Face::joyous, {"Pose", "Idle"}},
    {"a greeting", [](Life& l) { word(l, "hello"); }, Face::happy, {}},
    {"focus",
     [](Life& l) { word(l, "focus"); },
     {},
     {"Sleep"},
     [](Life& l) { word(l, "unfocus"); },
     Face::joyous,
     {"Wake"}},
    {"the charger",
     [](Life& l) { battery(l, 60, true); },
     Face::joyous,
     {"Pose"},
     [](Life& l) { battery(l, 60, false); },
     {},
     {"Nod"},
     "pet.ability"},
    {"an empty battery",
     [](Life& l) { battery(l, 3, false); },
     Face::pain,
     {"Faint"},
     [](Life& l) { battery(l, 60, false); },
     {},
     {"Wake"}},
    {"heat",
     [](Life& l) { l.computer.setHeat(ThermalState::serious); },
     Face::sigh,
     {},
     [](Life& l) { l.computer.setHeat(ThermalState::nominal); }},
    {"great heat",
     [](Life& l) { l.computer.setHeat(ThermalState::critical); },
     Face::pain,
     {"Faint"},
     [](Life& l) { l.computer.setHeat(ThermalState::nominal); },
     {},
     {"Wake"}},
    {"no network",
     [](Life& l) { l.computer.setNetwork(false); },
     Face::worried,
     {"Idle"},
     [](Life& l) { l.computer.setNetwork(true); },
     Face::happy},
    {"absence",
     [](Life& l) {
         l.computer.setUserPresent(false);
         l.advance(330);
     },
     {},
     {"Sleep"},
     [](Life& l) { l.computer.setUserPresent(true); },
     Face::joyous,
     {"Wake"}},
    {"a call",
     [](Life& l) { l.computer.setCameras({true}); },
     {},
     {"Idle"},
     [](Life& l) { l.computer.setCameras({false}); },
     Face::joyous,
     {"Hop"}},
    {"a break",
     [](Life& l) { l.creature().suggestBreak(); },
     Face::sigh,
     {"Idle"},
     {},
     {},
     {},
     "break"},
    {"a berry", feed, Face::happy, {"Eat"}, {}, {}, {}, "", 12},
    {"petting", pointAt, Face::joyous, {"Pose", "Idle"}, pointAway},
    {"the hand", carry, Face::surprised, {"Hurt"}, letGo},
};

class Witness : public Life {
public:
    Witness() : Life({.defaults = {{"chatter", false}, {"pet.friendship", 120.0}}}) {
        computer.setNetwork(true);
        advance(1300);  // so that petting is welcome
    }
    /// Sits, thinking of nothing, so that what it shows is about what happens.
    void settle() {
        pointAway(*this);
        advance(10);
        CompanionProbe::needs(creature()).hunger = 0.3;
        CompanionProbe::needs(creature()).energy = 0.8;
        creature().stop([this] { creature().sit(3, [this] { creature().think(); }); });
        utterances.clear();
        computer.notifications.delivered.clear();
        watcher.played.clear();
        watcher.sawHearts = false;
    }
    void expect(const char* when, std::optional<Face> face, const std::vector<std::string>& plays) {
        if (face) {
            ASSERT_FALSE(utterances.empty()) << when;
            EXPECT_EQ(utterances.front().face, *face) << when;
        }
        for (const std::string& anim : plays) {
            EXPECT_TRUE(watcher.played.contains(anim)) << when << ": " << anim;
        }
    }
    Watcher watcher{*this};
};

TEST(EveryEvent, ShowsAndPlaysWhatItShouldEachTimeAndLeavesNothing) {
    for (const Row& row : rows) {
        Witness life;
        for (int times = 0; times < 2; ++times) {
            SCOPED_TRACE(std::string(row.what) + ", time " + std::to_string(times));
            life.settle();
            row.happens(life);
            life.watcher.lookOn(row.lasts);
            life.expect("first", row.shows, row.plays);
            static const std::set<std::string> warm{"done", "a greeting", "petting", "the hand"};
            EXPECT_EQ(life.watcher.sawHearts, warm.contains(row.what));
            if (!row.notification.empty()) {
                EXPECT_TRUE(life.computer.notifications.delivered.contains(row.notification));
            }
            life.utterances.clear();
            life.watcher.played.clear();
            life.watcher.sawHearts = false;
            if (row.ends) row.ends(life);
            life.watcher.lookOn(6);
            life.expect("then", row.thenShows, row.thenPlays);
            static const std::set<std::string> glad{"focus", "absence"};
            EXPECT_EQ(life.watcher.sawHearts, glad.contains(row.what));
            pointAway(life);
            const std::size_t before = life.decisions.size();
            life.advance(1300);
            EXPECT_GT(life.decisions.size(), before + 10);
            life.creature().stop([] {});
            life.advance(4);
            expectAtRest(life.computer, *life.app, life.creature(), row.what);
            life.creature().think();
        }
    }
}

TEST(AFailure, LaysItDownForItsOwnEightSeconds) {
    Witness life;
    life.settle();
    word(life, "failed");
    life.advance(2);
    word(life, "celebrate");
    life.advance(3);
    word(life, "failed");
    life.advance(7.5);
    EXPECT_TRUE(life.creature().presence().isFainted()) << "the first one's time is over";
    life.advance(1);
    EXPECT_FALSE(life.creature().presence().isFainted());
}

TEST(AGift, ToWhoCannotHeedItIsRefused) {
    for (const char* told : {"focus", "failed"}) {
        Witness life;
        life.settle();
        word(life, told);
        life.advance(1);
        life.computer.files.files.insert("/d/a");
        life.computer.pointer.keys.option = true;
        EXPECT_FALSE(life.computer.dropOnStage({.location = body(life), .files = {"/d/a"}}));
        EXPECT_FALSE(life.computer.dropOnStage({.location = body(life), .item = "azurine"}));
        word(life, "unfocus");
        life.advance(20);
        EXPECT_TRUE(life.computer.dropOnStage({.location = body(life), .files = {"/d/a"}})) << told;
    }
}

TEST(EveryEvent, MeansNothingToACreatureInItsBall) {
    for (const Row& row : rows) {
        if (row.what == std::string("a call")) continue;
        Witness life;
        life.creature().toggleBall({});
        life.advance(5);
        ASSERT_FALSE(life.creature().presence().isOut());
        life.utterances.clear();
        const std::size_t before = life.decisions.size();
        row.happens(life);
        life.advance(20);
        if (row.ends) row.ends(life);
        life.advance(20);
        EXPECT_TRUE(life.utterances.empty()) << row.what;
        EXPECT_EQ(life.decisions.size(), before) << row.what;
        EXPECT_TRUE(life.pet().node().model().hidden) << row.what;
        life.creature().toggleBall({});
        life.advance(60);
        EXPECT_GT(life.decisions.size(), before) << row.what;
    }
}

TEST(EveryEvent, LeavesASleeperWithOneHeartbeatWhenItsPersonIsBack) {
    for (const Row& row : rows) {
        Witness life;
        life.computer.setUserPresent(false);
        life.advance(330);
        ASSERT_TRUE(life.creature().presence().isDozing());
        row.happens(life);
        life.advance(20);
        if (row.ends) row.ends(life);
        life.computer.setUserPresent(true);
        life.advance(60);
        const std::size_t before = life.times.size();
        life.advance(600);
        ASSERT_GT(life.times.size(), before + 5) << row.what;
        for (std::size_t i = before + 1; i < life.times.size(); ++i) {
            EXPECT_GT(life.times[i] - life.times[i - 1], 0.9) << row.what;
        }
    }
}

}  // namespace
}  // namespace quibbits
