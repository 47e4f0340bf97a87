// Days of random events, after which a creature must be found alive: thinking with one heartbeat,
// on the ground or in the air where it may be, with nothing left behind.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "support/DialTap.h"
#include "support/LivingCreature.h"

namespace quibbits {
namespace {

/// Everything that may befall a creature from outside, at random.
class Fate {
public:
    Fate(LivingCreature& life, std::uint64_t seed) : life_(life), chance_(seed) {}

    void strike() {
        SimulatedComputer& c = life_.computer;
        Companion& creature = life_.creature();
        switch (chance_.index(22)) {
            case 0: c.setDock(chance_.coin() ? std::optional(dock()) : std::nullopt); break;
            case 1: c.setScreen({chance_.uniform(800, 2560), chance_.uniform(600, 1440)}, 1); break;
            case 2: scatterIcons(); break;
            case 3: c.setBattery(static_cast<int>(chance_.index(101)), chance_.coin()); break;
            case 4: c.setHeat(static_cast<ThermalState>(chance_.index(4))); break;
            case 5: c.setNetwork(chance_.coin()); break;
            case 6: c.setMusic(chance_.coin() ? "Playing" : "Paused"); break;
            case 7: c.setUserPresent(chance_.coin()); break;
            case 8: creature.hook(chance_.pick(words_)); break;
            case 9: carry(); break;
            case 10: c.runLoop.shiftClock(chance_.uniform(-40000, 40000)); break;
            case 11: openWindow(); break;
            case 12: c.defaults.set("overApps", chance_.coin()); break;
            case 13: c.movePointer(life_.pet().frame().center()); break;
            case 14: feed(); break;
            case 15: c.bringToFront({.id = "other", .process = 9}); break;
            case 16: c.setCameras({chance_.coin()}); break;
            case 17: creature.toggleBall({chance_.uniform(0, 1440), 890}); break;
            case 18:
                creature.evolve({.to = chance_.pick(line(creature.firstStage()).subspan(1))});
                break;
            case 19: answer(); break;
            case 20:
                if (chance_.index(4) == 0) creature.restart();
                break;
            default: wander(); break;
        }
    }

    /// A quiet desktop and a full battery again.
    void makePeace() {
        SimulatedComputer& c = life_.computer;
        c.release(MouseButton::left);
        c.setUserPresent(true);
        c.setCameras({false});
        life_.advance(5);
        life_.creature().hook("unfocus");
        c.setHeat(ThermalState::nominal);
        c.setBattery(80, false);
        c.setNetwork(true);
        c.setMusic("Paused");
        c.windows.windows.clear();
        c.movePointer({0, 890});
        life_.advance(30);
        if (!life_.creature().presence().isOut()) life_.creature().toggleBall({700, 890});
        life_.advance(30);
    }

private:
    Rect dock() { return {chance_.uniform(0, 400), 0, chance_.uniform(100, 900), 60}; }

    void scatterIcons() {
        std::vector<DesktopIcon> icons;
        for (std::size_t i = chance_.index(12); i > 0; --i) {
            icons.push_back({"file", {chance_.uniform(0, 1300), chance_.uniform(20, 400), 64, 64}});
        }
        life_.computer.fileBrowser.icons = icons;
    }

    void feed() {
        const Point at = life_.pet().frame().center();
        life_.app->stage()->itemDragMoved(at + Vector{chance_.uniform(-300, 300), 0});
        life_.advance(chance_.uniform(0, 2));
        life_.computer.dropOnStage({.location = life_.pet().frame().center(),
                                    .item = std::string(rawValue(chance_.pick(allItems)))});
        life_.app->stage()->itemDragMoved(std::nullopt);
    }

    /// By a notification, or in the creature's menu.
    void answer() {
        if (chance_.coin()) {
            const std::string action = chance_.coin() ? "evolve" : "later";
            return life_.computer.notifications.onResponse(
                {.action = action, .pet = life_.creature().store()});
        }
        if (const auto menu = life_.creature().menu()) chance_.pick(menu->items).run();
    }

    void wander() {
        life_.computer.movePointer({chance_.uniform(0, 1440), chance_.uniform(0, 300)});
    }

    void carry() {
        SimulatedComputer& c = life_.computer;
        c.release(MouseButton::left);
        const Point at = life_.pet().position();
        c.movePointer({at.x, at.y + 25});
        c.press(MouseButton::left);
        for (std::size_t i = chance_.index(12); i > 0; --i) {
            life_.advance(chance_.uniform(0.05, 1.5));
            c.movePointer({chance_.uniform(0, 1440), chance_.uniform(0, 800)});
        }
        if (chance_.coin()) c.release(MouseButton::left);
    }

    void openWindow() {
        const std::string id = "w" + std::to_string(chance_.index(4));
        if (chance_.coin()) return life_.computer.closeWindow(id);
        life_.computer.putWindow(
            id, {.process = 9,
                 .frame = Rect{chance_.uniform(0, 800), chance_.uniform(-50, 200), 700, 500}});
    }

    LivingCreature& life_;
    Random chance_;
    std::vector<std::string> words_{"focus", "unfocus", "pass", "fail", "done", "hello"};
};

void expectAlive(LivingCreature& life, const std::string& when) {
    Companion& creature = life.creature();
    EXPECT_FALSE(creature.presence().isHeld()) << when;
    EXPECT_FALSE(creature.presence().isDozing()) << when;
    EXPECT_FALSE(creature.presence().isFainted()) << when;
    const std::size_t before = life.decisions.size();
    life.advance(600);
    ASSERT_GT(life.decisions.size(), before + 5) << "it is stuck, " << when;
    // Every routine takes a second at least, so a shorter pause means two heartbeats.
    for (std::size_t i = before + 1; i < life.times.size(); ++i) {
        EXPECT_GT(life.times[i] - life.times[i - 1], 0.9)
            << when << ": " << rawValue(life.decisions[i]) << " right after "
            << rawValue(life.decisions[i - 1]);
    }
    // A ghost may hover before the dock, lower than its upper edge, but not for long.
    const auto stands = [&] { return life.pet().surfaceIndex(life.pet().position()).has_value(); };
    for (int i = 0; creature.floats() && i < 600 && !stands(); ++i) life.advance(0.1);
    const Point at = life.pet().position();
    EXPECT_TRUE(stands()) << when << " at " << at.x << "," << at.y;
    EXPECT_LE(life.pet().node().sublayers().size(), 10u) << when;
    // Tricks leave wet spots and prints for a while.
    for (int i = 0; i < 600 && life.app->ballFX()->isPlaying(); ++i) life.advance(1);
    EXPECT_FALSE(life.app->ballFX()->isPlaying()) << when;
}

TEST(AWeekOfRandomEvents, LeavesEveryCreatureAliveWithOneHeartbeat) {
    const std::uint64_t fresh = std::random_device{}();
    std::cout << "fresh seed " << fresh << "\n";
    struct Lives {
        bool painting;
        int rounds;
    };
    for (const auto& [painting, rounds] : {Lives{false, 40}, Lives{true, 3}}) {
        for (const std::uint64_t seed : {std::uint64_t{1}, fresh}) {
            for (const std::string stage : {"sparrel", "wispul"}) {
                const std::string store = stage == "wispul" ? "umbrool" : "pet";
                LivingCreature life(
                    {.store = store, .stage = stage, .seed = seed, .painting = painting});
                Fate fate(life, seed);
                Random pause(seed + 99);
                for (int round = 0; round < rounds; ++round) {
                    for (int i = 0; i < 30; ++i) {
                        fate.strike();
                        life.advance(pause.uniform(0.1, 400));
                    }
                    fate.makePeace();
                    expectAlive(life, store + ", seed " + std::to_string(seed) + ", round " +
                                          std::to_string(round));
                    if (::testing::Test::HasFailure()) return;
                }
            }
        }
    }
}

/// Two hours with somebody who has just got the program and tries everything, with a real pointer.
class FirstDay {
public:
    explicit FirstDay(std::uint64_t seed)
        : life_({.stage = "egg", .defaults = {{"onboarded", true}}, .seed = seed, .painting = true},
                DrawnSheets::ofTrickster()),
          chance_(seed + 7) {}

    void live(Seconds seconds) {
        const Instant end = life_.computer.runLoop.now() + seconds;
        while (life_.computer.runLoop.now() < end && !::testing::Test::HasFailure()) {
            act();
            pass(chance_.uniform(0.05, 12));
        }
        comeToRest();
    }

private:
    SimulatedComputer& computer() { return life_.computer; }
    Companion* out() {
        for (const auto& each : life_.app->party()) {
            if (each->presence().isOut()) return each.get();
        }
        return nullptr;
    }
    Point body(Companion& who) { return who.pet().frame().center(); }

    void act() {
        SimulatedComputer& c = computer();
        Companion* who = out();
        switch (chance_.index(who ? 14 : 4)) {
            case 0:
            case 1: return tapSlot(c, static_cast<int>(chance_.index(2)));
            case 2: return c.setCameras({chance_.coin()});
            case 3: return c.runLoop.shiftClock(chance_.uniform(-40000, 40000));
            case 4: return c.setScreen({chance_.uniform(700, 2000), chance_.uniform(500, 1200)}, 1);
            case 5: return c.movePointer(body(*who));
            case 6: return carry(*who);
            case 7: return give(*who);
            case 8: return drop(*who);
            case 9: return answer(*who);
            case 10: return c.setBattery(static_cast<int>(chance_.index(101)), chance_.coin());
            case 11: return life_.app->open({"quibbits://" + chance_.pick(words_)});
            case 12: return openWindow();
            default: who->gainEXP(chance_.uniform(0.2, 3)); return;
        }
    }

    void carry(Companion& who) {
        computer().movePointer(body(who));
        computer().press(MouseButton::left);
        for (int i = 0; i < 8; ++i) {
            pass(0.2);
            computer().movePointer({chance_.uniform(0, 900), chance_.uniform(10, 600)});
        }
        computer().release(MouseButton::left);
    }

    void give(Companion& who) {
        life_.app->stage()->itemDragMoved(body(who));
        pass(chance_.uniform(0, 2));
        computer().dropOnStage(
            {.location = body(who), .item = std::string(rawValue(chance_.pick(allItems)))});
        life_.app->stage()->itemDragMoved(std::nullopt);
        computer().movePointer(body(who));
    }

    std::vector<std::string> newFiles() {
        std::vector<std::string> paths;
        for (std::size_t i = 1 + chance_.index(4); i > 0; --i) {
            paths.push_back("/d/" + std::to_string(++files_));
            computer().files.files.insert(paths.back());
        }
        return paths;
    }

    void drop(Companion& who) {
        const auto paths = newFiles();
        computer().pointer.keys.option = true;
        const bool taken = computer().dropOnStage({.location = body(who), .files = paths});
        computer().pointer.keys.option = false;
        if (taken && who.presence().isReady())
            doomed_.insert(doomed_.end(), paths.begin(), paths.end());
        for (int i = 0; i < 10; ++i) {
            computer().movePointer(body(who) + Vector{chance_.uniform(-9, 9), 0});
            pass(0.15);
        }
    }

    void answer(Companion& who) {
        if (chance_.coin()) {
            const auto paths = newFiles();
            doomed_.insert(doomed_.end(), paths.begin(), paths.end());
            return computer().notifications.onResponse(
                {.action = "zap", .pet = who.store(), .paths = paths});
        }
        computer().notifications.onResponse(
            {.action = chance_.coin() ? "evolve" : "later", .pet = who.store()});
    }

    void openWindow() {
        if (chance_.coin()) return computer().closeWindow("w");
        computer().putWindow("w", {.process = 9, .frame = Rect{100, 60, 700, 500}});
        computer().bringToFront({.id = "editor", .process = 9});
    }

    /// Lets time pass and looks on: one of them at most is out.
    void pass(Seconds seconds) {
        life_.advance(seconds);
        const auto& party = life_.app->party();
        EXPECT_FALSE(party[0]->presence().isOut() && party[1]->presence().isOut())
            << life_.computer.runLoop.now();
    }

    void comeToRest() {
        SimulatedComputer& c = computer();
        c.release(MouseButton::left);
        c.setCameras({false});
        c.setBattery(80, false);
        c.closeWindow("w");
        c.movePointer({0, 490});
        life_.app->open({"quibbits://unfocus"});
        pass(60);
        if (!out()) tapSlot(c, 0);
        c.movePointer({0, 490});
        pass(60);
        for (const std::string& path : doomed_) {
            EXPECT_EQ(std::ranges::count(c.files.trash, path), 1) << path;
        }
        ASSERT_TRUE(out());
        const Date before = out()->why().at;
        pass(200);
        EXPECT_NE(out()->why().at, before) << "it is stuck";
        EXPECT_LE(out()->pet().node().sublayers().size(), 10u);
        for (int i = 0; i < 60 && life_.app->ballFX()->isPlaying(); ++i) pass(10);
        EXPECT_FALSE(life_.app->ballFX()->isPlaying());
    }

    LivingCreature life_;
    Random chance_;
    int files_ = 0;
    std::vector<std::string> doomed_;  // what the user has given to be destroyed
    const std::vector<std::string> words_{"focus", "unfocus", "pass", "fail", "done", "hello"};
};

TEST(ALivelyFirstDay, LeavesNobodyStuckNobodyDoubledAndNoFileBehind) {
    const std::uint64_t fresh = std::random_device{}();
    std::cout << "fresh seed " << fresh << "\n";
    for (const std::uint64_t seed : {std::uint64_t{1}, std::uint64_t{2}, fresh}) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        FirstDay(seed).live(7200);
        if (::testing::Test::HasFailure()) return;
    }
}

TEST(QuittingAtAnyMoment, LosesNothingAndTouchesNothingThatIsGone) {
    for (std::uint64_t seed = 1; seed <= 60; ++seed) {
        LivingCreature life({.seed = seed});
        Fate fate(life, seed);
        Random pause(seed);
        for (int i = 0; i < 6; ++i) {
            fate.strike();
            life.advance(pause.uniform(0, 5));
        }
        const auto energy = life.computer.defaults.onlyNumber("pet.energy");
        const Stage stage = life.creature().stage();
        life.quit();
        life.advance(60);  // whatever was pending finds nobody
        life.computer.release(MouseButton::left);
        EXPECT_EQ(life.computer.defaults.onlyNumber("pet.energy"), energy);
        life.launch();
        EXPECT_EQ(life.creature().stage(), stage);
    }
}

}  // namespace
}  // namespace quibbits
