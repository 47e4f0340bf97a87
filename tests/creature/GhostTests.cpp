// What sets the ghost line apart: the air, the window in front, the night.

#include <gtest/gtest.h>

#include "support/CompanionProbe.h"
#include "support/LivingCreature.h"

namespace quibbits {
namespace {

class Ghost : public LivingCreature {
public:
    explicit Ghost(Options options) : LivingCreature(ghostly(std::move(options))) {}
    Ghost(Options options, DrawnSheets drawn)
        : LivingCreature(ghostly(std::move(options)), std::move(drawn)) {}

    const Mind& mind() const { return minds.back(); }
    Layer& node() { return pet().node(); }
    void openWindow(Rect frame) {
        computer.putWindow("front", {.process = 9, .frame = frame});
        computer.bringToFront({.id = "editor", .process = 9});
        computer.defaults.set("overApps", true);
        computer.workspace.activated.emit();
    }
    /// Advances until it is hidden in the window, half an hour at most.
    bool untilInside() {
        for (int i = 0; i < 18000 && pet().isInteractive(); ++i) advance(0.1);
        return !pet().isInteractive();
    }
    bool isPlain() {
        return !pet().figure().mask() && pet().sprite().model().opacity == 1 &&
               pet().sprite().model().position == Point{} && pet().isInteractive();
    }

private:
    static Options ghostly(Options options) {
        options.store = "umbrool";
        if (options.stage == "sparrel") options.stage = "umbrool";
        return options;
    }
};

TEST(AGhost, GlidesInAnArchAndOnlyTheOldestWalksAFewSteps) {
    struct Row {
        std::string stage;
        Vector way;
        bool walks;
    };
    for (const auto& [stage, way, walks] : std::vector<Row>{
             {"umbrool", {150, 0}, true},
             {"umbrool", {150, 1.9}, true},
             {"umbrool", {150, 2.1}, false},
             {"umbrool", {230, 0}, false},
             {"wispul", {150, 0}, false},
             {"wispul", {-150, 200}, false},
         }) {
        Ghost ghost({.stage = stage});
        ghost.pet().interrupt();
        const Point from = ghost.pet().position();
        bool arrived = false;
        ghost.creature().go({.to = from + way}, [&] { arrived = true; });
        double highest = 0;
        Seconds took = 0;
        for (; !arrived && took < 30; took += 0.05) {
            ghost.advance(0.05);
            highest = std::max(highest, ghost.pet().position().y - from.y - std::max(way.dy, 0.0));
        }
        EXPECT_TRUE(arrived);
        if (walks) {
            EXPECT_LT(highest, 2) << stage;
            continue;
        }
        // A curve rises half as high as its control point, and a little less on a slope.
        EXPECT_GT(highest, 10) << stage << " " << way.dx;
        EXPECT_NEAR(took, std::max(way.length() / 140, 0.6), 0.11);
        EXPECT_NEAR(distance(ghost.pet().position(), from + way), 0, 1e-6);
    }
}

TEST(AGhost, ComesBackToTheGroundFromEveryFlight) {
    Ghost ghost({.defaults = {{"umbrool.boredom", 1.0}}});
    std::size_t flights = 0;
    for (int i = 0; i < 200; ++i) {
        ghost.untilDecisions(1);
        if (ghost.decisions.size() < 2) continue;
        const Intent before = ghost.decisions[ghost.decisions.size() - 2];
        const Intent now = ghost.decisions.back();
        if (before != Intent::fly && before != Intent::patrol) continue;
        if (now != Intent::sit && now != Intent::daydream && now != Intent::hum) continue;
        ++flights;
        EXPECT_FALSE(ghost.pet().isAirborne());
        EXPECT_EQ(ghost.pet().sprite().animation("bob"), nullptr);
    }
    EXPECT_GT(flights, 5u);
}

TEST(AGhost, StopsBobbingWhateverEndsItsFlight) {
    Ghost ghost({.stage = "wispul"});
    ghost.pet().interrupt();
    const auto bobs = [&] { return ghost.pet().sprite().animation("bob") != nullptr; };
    const Point floor = ghost.pet().position();

    // It arrives in the air, and has to think.
    bool bobbedOnLanding = false;
    ghost.creature().listen({.onDecision = [&](const Companion&, const Mind&) {
        bobbedOnLanding = bobbedOnLanding || bobs();
        ghost.pet().interrupt();
    }});
    ghost.creature().go({.to = floor + Vector{0, 200}}, [&] { ghost.creature().think(); });
    ghost.advance(10);
    EXPECT_FALSE(bobbedOnLanding);

    ghost.creature().stop([] {});
    ghost.creature().go({.to = floor + Vector{0, 200}}, [] {});
    ASSERT_TRUE(bobs());
    ghost.creature().stop([] {});  // before it has left the floor
    EXPECT_FALSE(bobs());

    ghost.creature().go({.to = floor + Vector{0, 200}}, [] {});
    ghost.advance(0.5);
    ghost.creature().restart();
    ghost.creature().toggleBall({});
    ghost.advance(5);
    EXPECT_TRUE(ghost.creature().presence().isOut());
    EXPECT_FALSE(bobs());
}

TEST(AGhostsTrail, IsGoneWithTheProgram) {
    Ghost ghost({});
    ghost.pet().interrupt();
    ghost.creature().go({.to = ghost.pet().position() + Vector{0, 600}}, [] {});
    std::vector<std::weak_ptr<Layer>> shades;
    ghost.advance(2);
    for (const LayerRef& layer : ghost.node().superlayer()->sublayers()) {
        if (layer != ghost.pet().nodeRef() && layer->mask()) shades.push_back(layer);
    }
    ASSERT_FALSE(shades.empty());
    ghost.quit();
    ghost.computer.runLoop.dropJobs();
    for (const auto& shade : shades) EXPECT_TRUE(shade.expired());
}

TEST(AHauntedWindow, ShowsTheGhostAtItsEdgesAndLetsItGoWhole) {
    Ghost ghost({});
    ghost.openWindow({300, 200, 700, 400});
    for (int hauntings = 0; hauntings < 3; ++hauntings) {
        ASSERT_TRUE(ghost.untilInside());
        EXPECT_NEAR(ghost.pet().position().y, 600, 1e-6);
        int appearances = 0;
        bool isUp = false;
        while (!ghost.pet().isInteractive()) {
            ghost.advance(0.1);
            const bool up =
                ghost.pet().figure().mask() && ghost.pet().sprite().model().opacity == 1;
            if (up && !isUp) {
                ++appearances;
                const double y = ghost.pet().position().y;
                EXPECT_TRUE(y == 204 || y == 600) << y;
            }
            isUp = up;
        }
        EXPECT_GE(appearances, 2);  // once or twice looking out, and climbing out
        EXPECT_TRUE(ghost.isPlain());
        ghost.advance(1);
    }
}

TEST(AHauntedWindow, IsLookedOutOfWithoutAJumpOrAFlash) {
    for (const double top : {600.0, 900.0}) {  // the second is maximised
        Ghost ghost({});
        ghost.openWindow({300, 200, 700, top - 200});
        int seen = 0;
        for (int hauntings = 0; hauntings < 3; ++hauntings) {
            ASSERT_TRUE(ghost.untilInside());
            std::optional<double> before;
            while (!ghost.pet().isInteractive()) {
                ghost.advance(0.01);
                const LayerProperties sprite = ghost.pet().sprite().presentation();
                const bool shown = ghost.pet().figure().mask() && sprite.opacity > 0.5;
                if (shown && before) {
                    EXPECT_LT(std::abs(sprite.position.y - *before), 12);
                }
                before = shown ? std::optional(sprite.position.y) : std::nullopt;
                if (!shown) continue;
                ++seen;
                EXPECT_LE(sprite.position.y, 0.01) << "nothing bobs over the edge";
                EXPECT_LE(ghost.pet().position().y + ghost.pet().frame().height + sprite.position.y,
                          900 + 30)
                    << "it looks out where it can be seen";
            }
            ghost.advance(1);
        }
        EXPECT_GT(seen, 300);
    }
}

TEST(AGhost, ThatSaysBooNearTheTopIsHeard) {
    for (const double pointer : {560.0, 860.0}) {
        LivingCreature::Options options{.defaults = {{"QuibDemo", std::string("boo")}}};
        options.prepare = [=](SimulatedComputer& c) { c.movePointer({600, pointer}); };
        Ghost ghost(options, DrawnSheets::ofTrickster());
        ghost.advance(2.5);
        ASSERT_TRUE(ghost.hasSaid("Boo!"));
        ASSERT_TRUE(ghost.pet().figure().mask()) << "its feet are cut off";
        EXPECT_EQ(ghost.node().mask(), nullptr) << "what it says is not";
        for (const LayerRef& part : ghost.node().sublayers()) {
            if (part->model().opacity == 0 || part->model().borderWidth == 0) continue;
            EXPECT_LE(ghost.pet().position().y + part->frame().maxY(), 900) << pointer;
        }
    }
}

TEST(AHauntedWindow, IsLeftAtOnceWhenSomethingWantsTheGhost) {
    struct Row {
        const char* what;
        std::function<void(Ghost&)> happens;
    };
    for (const auto& [what, happens] : std::vector<Row>{
             {"a word", [](Ghost& g) { g.creature().hook("done"); }},
             {"its ball", [](Ghost& g) { g.creature().toggleBall({}); }},
             {"absence", [](Ghost& g) { g.creature().userLeft(); }},
         }) {
        Ghost ghost({});
        ghost.openWindow({300, 200, 700, 400});
        ASSERT_TRUE(ghost.untilInside());
        ghost.advance(0.7);
        happens(ghost);
        EXPECT_EQ(ghost.pet().figure().mask(), nullptr) << what;
        EXPECT_EQ(ghost.pet().sprite().model().opacity, 1) << what;
        EXPECT_EQ(ghost.pet().isInteractive(), !ghost.creature().presence().isBusy()) << what;
    }
}

TEST(AGhost, HauntsNothingWhenThatIsSwitchedOff) {
    Ghost ghost({.defaults = {{"umbrool.phaseThroughWindows", false}}});
    ghost.openWindow({300, 200, 700, 400});
    ghost.untilDecisions(3);
    EXPECT_TRUE(ghost.mind().ghost);
    EXPECT_FALSE(ghost.mind().windowToHaunt);
    ghost.computer.defaults.set("umbrool.phaseThroughWindows", true);
    ghost.untilDecisions(1);
    EXPECT_TRUE(ghost.mind().windowToHaunt);
}

/// The third stage with all that its tricks play, and a mouse that has lain still.
class Trickster : public Ghost {
public:
    explicit Trickster(std::map<std::string, DefaultsValue> defaults = {})
        : Ghost({.defaults = std::move(defaults)}, DrawnSheets::ofTrickster()) {
        computer.movePointer({700, 400});
        advance(95);
    }
    /// Decides again, with a pointer untouched for as long, as the mind sees it.
    Mind mindAfter(Seconds untouched) {
        creature().stop([] {});
        advance(10);  // down to the ground
        computer.pointer.lastMouse = computer.runLoop.now() - untouched;
        creature().stop([this] { creature().think(); });
        return mind();
    }
    bool carriesThePointer() { return computer.pointer.hidden; }
};

TEST(AStolenPointer, IsOneThatHasLainStillInSightForAWhile) {
    Trickster ghost;
    for (const auto& [seconds, left] :
         std::map<double, bool>{{89, false}, {90, true}, {280, true}, {281, false}}) {
        EXPECT_EQ(ghost.mindAfter(seconds).cursorLeftAlone, left) << seconds;
    }
    Trickster honest({{"umbrool.stealsCursor", false}});
    EXPECT_FALSE(honest.mindAfter(100).cursorLeftAlone);
}

TEST(AStolenPointer, ComesBackAtTheFirstTouchAndAfterHalfAMinuteByItself) {
    for (const bool touched : {true, false}) {
        Trickster ghost;
        int thefts = 0;
        for (int i = 0; i < 40000 && thefts == 0; ++i) {
            ghost.computer.pointer.lastMouse = ghost.computer.runLoop.now() - 100;
            ghost.advance(0.1);
            if (ghost.carriesThePointer()) ++thefts;
        }
        ASSERT_EQ(thefts, 1);
        EXPECT_EQ(ghost.computer.pointer.place, (Point{700, 400}));  // the real one stays
        if (touched) {
            ghost.advance(1);
            ghost.computer.movePointer({702, 400});
            ghost.advance(0.01);
            EXPECT_FALSE(ghost.carriesThePointer());
        } else {
            ghost.advance(60);
            EXPECT_FALSE(ghost.carriesThePointer());
        }
        EXPECT_TRUE(ghost.hasSaid("Peek-a-boo! 👻"));
        const auto before = ghost.decisions.size();
        ghost.advance(90);
        EXPECT_GT(ghost.decisions.size(), before);
    }
}

TEST(AStolenPointer, ComesBackWhenTheScreenChangesUnderTheThief) {
    for (const bool restarted : {false, true}) {
        Trickster ghost;
        for (int thefts = 0; thefts < 2; ++thefts) {
            if (!ghost.creature().presence().isOut()) {
                ghost.computer.defaults.set("umbrool.stage", std::string("umbrool"));
                ghost.quit();
                ghost.launch();
            }
            ghost.computer.setScreen({1440, 900}, 1);
            const std::size_t plain = ghost.node().sublayers().size();
            for (int i = 0; i < 40000 && !ghost.carriesThePointer(); ++i) {
                ghost.computer.pointer.lastMouse = ghost.computer.runLoop.now() - 100;
                ghost.advance(0.1);
            }
            ASSERT_TRUE(ghost.carriesThePointer());
            if (restarted)
                ghost.creature().restart();
            else
                ghost.computer.setScreen({600, 400}, 1);
            ghost.advance(0.1);
            EXPECT_FALSE(ghost.carriesThePointer());
            ghost.advance(60);
            EXPECT_LE(ghost.node().sublayers().size(), plain) << "no arrow stays on it";
        }
    }
}

TEST(AStolenPointer, IsShownAgainWhenTheProgramEnds) {
    Trickster ghost;
    for (int i = 0; i < 40000 && !ghost.carriesThePointer(); ++i) {
        ghost.computer.pointer.lastMouse = ghost.computer.runLoop.now() - 100;
        ghost.advance(0.1);
    }
    ASSERT_TRUE(ghost.carriesThePointer());
    ghost.app->applicationWillTerminate();
    EXPECT_FALSE(ghost.carriesThePointer());
}

TEST(ALick, IsSeenWithItsWordsNearTheTopOfTheScreen) {
    for (const double pointer : {300.0, 560.0, 650.0, 700.0, 810.0}) {
        Ghost ghost({.defaults = {{"umbrool.exp", 90000.0}}}, DrawnSheets::ofTrickster());
        ghost.computer.movePointer({700, pointer});
        ghost.advance(5);
        ghost.creature().stop([] {});
        ghost.utterances.clear();
        CompanionProbe::begin(ghost.creature(), Intent::lick, [] {});
        for (int i = 0; i < 200 && !ghost.node().animation("zoom"); ++i) ghost.advance(0.1);
        ASSERT_TRUE(ghost.node().animation("zoom")) << pointer;
        ghost.advance(1);  // as big as it gets
        const double size = ghost.node().presentation().transform.scaleY;
        EXPECT_GT(size, 1.7);
        for (const LayerRef& part : ghost.node().sublayers()) {
            if (part->model().opacity == 0 || part->model().borderWidth == 0) continue;
            const double foot = ghost.pet().position().y;
            EXPECT_LE(foot + size * part->frame().maxY(), 900) << pointer;
            EXPECT_GE(foot + size * part->frame().minY(), 0) << pointer;
        }
    }
}

TEST(ATrick, LeavesTheBodyAsItWasAndNothingBehind) {
    Trickster ghost({{"umbrool.exp", 90000.0}});
    ghost.openWindow({300, 200, 700, 400});
    std::set<Intent> tricks;
    const std::set all{Intent::lick, Intent::clone, Intent::shadowGag, Intent::prank};
    for (int i = 0; i < 3000 && tricks.size() < all.size(); ++i) {
        CompanionProbe::needs(ghost.creature()).energy = 0.9;
        CompanionProbe::needs(ghost.creature()).hunger = 0;
        CompanionProbe::needs(ghost.creature()).boredom = 1;
        ghost.untilDecisions(1);
        if (ghost.decisions.size() < 2) continue;
        const Intent before = ghost.decisions[ghost.decisions.size() - 2];
        if (!all.contains(before)) continue;
        tricks.insert(before);
        EXPECT_EQ(ghost.node().animation("zoom"), nullptr) << rawValue(before);
        EXPECT_EQ(ghost.pet().figure().mask(), nullptr);
    }
    EXPECT_EQ(tricks, all);
    ghost.creature().toggleBall({});  // and rest from all that
    ghost.advance(20);
    EXPECT_FALSE(ghost.app->ballFX()->isPlaying());
    EXPECT_EQ(ghost.node().superlayer()->sublayers().size(), 2u);  // two bodies, no shades
}

TEST(TheGhostHour, IsTheEveningTheNightOrADarkDesktop) {
    struct Row {
        int hour;
        bool dark;
        std::map<std::string, DefaultsValue> defaults;
        bool isGhostHour;
    };
    for (const auto& [hour, dark, defaults, isGhostHour] : std::vector<Row>{
             {18, false, {}, false},
             {19, false, {}, true},
             {5, false, {}, true},
             {6, false, {}, false},
             {12, true, {}, true},
             {12, false, {{"QuibGhostHour", true}}, true},
             {22, true, {{"QuibGhostHour", false}}, false},
             {22, false, {{"umbrool.nightOwl", false}}, false},
         }) {
        Ghost ghost({.defaults = defaults,
                     .begin = {.year = 2026, .month = 3, .day = 2, .hour = hour},
                     .prepare = [dark = dark](SimulatedComputer& c) { c.appearance.dark = dark; }});
        EXPECT_EQ(ghost.mind().ghostHour, isGhostHour) << hour;
        EXPECT_EQ(ghost.pet().sprite().model().shadow.opacity, isGhostHour ? 0.95 : 0) << hour;
        EXPECT_EQ(ghost.hasSaid("The night is mine… 👻"), isGhostHour);
        ghost.computer.defaults.set("QuibGhostHour", false);
        ghost.untilDecisions(1);
        EXPECT_EQ(ghost.pet().sprite().model().shadow.opacity, 0);
        ghost.computer.defaults.set("QuibGhostHour", true);
        ghost.utterances.clear();
        ghost.untilDecisions(1);
        EXPECT_EQ(ghost.pet().sprite().model().shadow.opacity, ghost.mind().ghostHour ? 0.95 : 0);
        EXPECT_EQ(ghost.hasSaid("The night is mine… 👻"),
                  !isGhostHour && ghost.mind().ghostHour);  // not twice within ten hours
    }
}

}  // namespace
}  // namespace quibbits
