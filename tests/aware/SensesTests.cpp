#include <gtest/gtest.h>

#include "aware/Senses.h"
#include "sim/SimulatedComputer.h"
#include "support/DrawnSheets.h"
#include "support/FlatText.h"

namespace quibbits {
namespace {

class SensesTests : public testing::Test {
protected:
    SensesTests() {
        senses.onAway = [this] { told("away"); };
        senses.onBack = [this] { told("back"); };
        senses.onBreakTime = [this] { told("break"); };
        senses.onCamera = [this](bool on) { told(on ? "camera on" : "camera off"); };
        senses.onHeat = [this] { told("heat"); };
        senses.onOnline = [this](bool on) { told(on ? "online" : "offline"); };
    }
    void told(std::string what) {
        news.push_back(std::move(what));
        times.push_back(computer.runLoop.now());
    }
    void advance(Seconds seconds) { computer.runLoop.advance(seconds); }
    void remindAfter(std::int64_t minutes) {
        computer.defaults.set("breakReminder", true);
        computer.defaults.set("breakMinutes", minutes);
    }

    using News = std::vector<std::string>;
    DrawnSheets sheets{{}};
    FlatText text;
    SimulatedComputer computer{{}, sheets, text};
    News news;
    std::vector<Instant> times;
    Senses senses{computer.machine, computer.pointer, computer.runLoop, computer.defaults};
};

TEST_F(SensesTests, TheUserIsAwayAfterFiveMinutesAndNotAtThemExactly) {
    computer.setUserPresent(false);
    advance(300);  // a check falls on the very mark
    EXPECT_FALSE(senses.away());
    advance(20);
    EXPECT_TRUE(senses.away());
    EXPECT_EQ(news, News{"away"});
    EXPECT_EQ(times, std::vector<Instant>{320});
    advance(3600);
    EXPECT_EQ(news, News{"away"});
}

TEST_F(SensesTests, AReturnIsSeenWithinTwoSeconds) {
    computer.setUserPresent(false);
    advance(1000.5);
    ASSERT_TRUE(senses.away());
    computer.touchKey();
    advance(2);
    EXPECT_FALSE(senses.away());
    EXPECT_EQ(news, (News{"away", "back"}));
    advance(297);
    EXPECT_FALSE(senses.away());
    advance(20);
    EXPECT_EQ(news, (News{"away", "back", "away"}));
}

TEST_F(SensesTests, InputThreeSecondsAgoIsNoReturn) {
    computer.setUserPresent(false);
    advance(321);
    ASSERT_TRUE(senses.away());  // checks fall on even seconds now
    computer.pointer.lastInput = 319;
    advance(1);
    EXPECT_TRUE(senses.away());
    computer.pointer.lastInput = 321.01;
    advance(2);
    EXPECT_FALSE(senses.away());
}

TEST_F(SensesTests, LookThreeTimesAMinuteAtAPresentUserAndThirtyTimesForAnAbsentOne) {
    const auto before = computer.runLoop.wakeUps();
    advance(600);
    EXPECT_EQ(computer.runLoop.wakeUps() - before, 30u);
    computer.setUserPresent(false);
    advance(600);
    const auto away = computer.runLoop.wakeUps();
    advance(60);
    EXPECT_EQ(computer.runLoop.wakeUps() - away, 30u);
    EXPECT_EQ(computer.runLoop.pendingJobs(), 1u);
}

TEST_F(SensesTests, ABreakIsDueOnlyAfterMoreThanTheStretch) {
    struct Row {
        std::optional<std::int64_t> minutes;
        int stretch;  // minutes
    };
    for (const auto& [minutes, stretch] : std::vector<Row>{
             {45, 45}, {15, 15}, {14, 15}, {5, 15}, {0, 15}, {-60, 15}, {std::nullopt, 15}}) {
        SimulatedComputer other({}, sheets, text);
        other.defaults.set("breakReminder", true);
        if (minutes) other.defaults.set("breakMinutes", *minutes);
        Senses watcher(other.machine, other.pointer, other.runLoop, other.defaults);
        std::vector<Instant> breaks;
        watcher.onBreakTime = [&] { breaks.push_back(other.runLoop.now()); };
        other.runLoop.advance(stretch * 60);
        EXPECT_TRUE(breaks.empty()) << stretch;
        other.runLoop.advance(20);
        EXPECT_EQ(breaks, std::vector<Instant>{stretch * 60.0 + 20});
        other.runLoop.advance(stretch * 60 + 20);
        EXPECT_EQ(breaks.size(), 2u) << "the next stretch began at once";
    }
}

TEST_F(SensesTests, TimeAwayIsNoWorkAndNoBreakFallsIntoIt) {
    remindAfter(15);
    advance(800);
    computer.setUserPresent(false);
    advance(4000);
    EXPECT_EQ(news, (News{"break", "away"})) << "it was still at work when the stretch was full";
    news.clear();
    computer.setUserPresent(true);
    advance(2);
    EXPECT_EQ(news, News{"back"});
    advance(900);
    EXPECT_EQ(news, News{"back"});
    advance(20);
    EXPECT_EQ(news, (News{"back", "break"}));
}

TEST_F(SensesTests, ANightThatTheMachineSleptThroughIsNoWork) {
    remindAfter(15);
    for (const Seconds asleep : {8 * 3600.0, 60.0}) {
        advance(800);
        computer.runLoop.shiftClock(asleep);
        news.clear();
        advance(140);
        EXPECT_EQ(news, asleep > 300 ? News{} : News{"break"}) << asleep;
        advance(800);
        news.clear();
        computer.runLoop.shiftClock(8 * 3600.0);
        advance(20);
    }
}

TEST_F(SensesTests, AReturnBeginsAStretchEvenWhileNobodyWantsReminders) {
    advance(1000);
    computer.setUserPresent(false);
    advance(400);
    computer.setUserPresent(true);
    advance(10);
    remindAfter(15);
    advance(880);
    EXPECT_EQ(news, (News{"away", "back"})) << "the work before the absence does not count";
    advance(60);
    EXPECT_EQ(news.back(), "break");
}

TEST_F(SensesTests, CamerasCountTogether) {
    EXPECT_FALSE(senses.cameraOn());
    computer.setCameras({false, false});
    computer.setCameras({true, false});
    computer.setCameras({true, true});
    EXPECT_TRUE(senses.cameraOn());
    computer.setCameras({false, true});
    computer.setCameras({false, false});
    computer.setCameras({});
    EXPECT_EQ(news, (News{"camera on", "camera off"}));
}

TEST_F(SensesTests, ACameraThatWasOnBeforeTheLaunchIsNotAnnounced) {
    computer.machine.cameras = {true};
    Senses late(computer.machine, computer.pointer, computer.runLoop, computer.defaults);
    int announced = 0;
    late.onCamera = [&](bool) { ++announced; };
    EXPECT_FALSE(late.cameraOn());
    computer.machine.camerasChanged.emit();
    EXPECT_TRUE(late.cameraOn());
    EXPECT_EQ(announced, 1);
}

TEST_F(SensesTests, TheFirstNetworkReportIsNoNews) {
    for (const bool first : {true, false}) {
        Senses fresh(computer.machine, computer.pointer, computer.runLoop, computer.defaults);
        std::vector<bool> heard;
        fresh.onOnline = [&](bool on) { heard.push_back(on); };
        for (const bool on : {first, first, !first, !first, first}) computer.setNetwork(on);
        EXPECT_EQ(heard, (std::vector<bool>{!first, first}));
    }
}

TEST_F(SensesTests, TheLastPlayerToReportIsBelieved) {
    EXPECT_FALSE(senses.musicPlaying());
    for (const auto& [state, playing] :
         std::vector<std::pair<std::optional<std::string>, bool>>{{"Playing", true},
                                                                  {"Paused", false},
                                                                  {"Playing", true},
                                                                  {std::nullopt, false},
                                                                  {"playing", false},
                                                                  {"Playing", true},
                                                                  {"", false}}) {
        computer.setMusic(state);
        EXPECT_EQ(senses.musicPlaying(), playing) << state.value_or("none");
    }
    EXPECT_TRUE(news.empty());
}

TEST(TheWatchers, EndQuietly) {
    DrawnSheets sheets{{}};
    FlatText text;
    SimulatedComputer computer({}, sheets, text);
    {
        const Senses senses(computer.machine, computer.pointer, computer.runLoop,
                            computer.defaults);
        computer.runLoop.advance(50);
    }
    EXPECT_EQ(computer.runLoop.pendingJobs(), 0u);
    EXPECT_FALSE(computer.machine.networkReported.hasListeners());
    EXPECT_FALSE(computer.machine.playerReported.hasListeners());
}

}  // namespace
}  // namespace quibbits
