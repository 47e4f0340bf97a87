#include <gtest/gtest.h>

#include "support/CompanionProbe.h"
#include "support/LivingCreature.h"

namespace quibbits {
namespace {

/// A creature with its ball.
class Life : public LivingCreature {
public:
    explicit Life(Options options) : LivingCreature(std::move(options)) {}

    void toggle() { creature().toggleBall({700, 900}); }
    bool isSeen() { return !pet().node().model().hidden; }
    /// Nothing of a show is left over and the creature is where it belongs.
    void expectClean() {
        EXPECT_FALSE(app->ballFX()->isPlaying());
        EXPECT_FALSE(effectsVisible());
        const Layer* home = pet().node().superlayer();
        EXPECT_TRUE(home && home != effectsRoot());
        EXPECT_FALSE(creature().presence().isBusy());
    }
    bool effectsVisible() { return effectsPanel()->isVisible(); }

private:
    SimulatedPanel* effectsPanel() {
        for (SimulatedPanel* panel : computer.shownPanels()) {
            if (!panel->acceptsDrops()) return panel;
        }
        std::abort();
    }
    const Layer* effectsRoot() { return &effectsPanel()->root(); }
};

constexpr double expForLevel20 = 8000;  // medium fast

TEST(TheBall, TakesACreatureInAndLetsItOut) {
    Life life({});
    life.advance(20);
    life.toggle();
    EXPECT_TRUE(life.creature().presence().isBusy());
    EXPECT_TRUE(life.creature().presence().isOut());
    EXPECT_TRUE(life.effectsVisible());
    life.toggle();  // does nothing while the show runs

    life.advance(1.56);
    EXPECT_TRUE(life.creature().presence().isOut());
    EXPECT_FALSE(life.isSeen());
    life.advance(0.02);
    EXPECT_FALSE(life.creature().presence().isOut());
    EXPECT_FALSE(life.pet().isInteractive());
    life.expectClean();
    const auto decided = life.decisions.size();
    life.advance(3600);
    EXPECT_EQ(life.decisions.size(), decided);  // nobody thinks in a ball

    life.toggle();
    life.advance(2.11);
    EXPECT_FALSE(life.creature().presence().isOut());
    EXPECT_TRUE(life.isSeen());
    life.advance(0.02);
    EXPECT_TRUE(life.creature().presence().isOut());
    EXPECT_TRUE(life.pet().isInteractive());
    life.expectClean();
    EXPECT_EQ(life.pet().position(), life.creature().summonSpot());
    life.advance(10);
    EXPECT_GT(life.decisions.size(), decided);
}

TEST(TheBall, IsShutToACreatureInTheHand) {
    Life life({});
    life.advance(20);
    const Point at = life.pet().position();
    life.computer.movePointer({at.x, at.y + 25});
    life.computer.press(MouseButton::left);
    life.toggle();
    EXPECT_FALSE(life.creature().presence().isBusy());
    life.creature().restart();
    EXPECT_EQ(life.creature().stage(), Stage::sparrel);
}

TEST(TheBall, WakesWhoeverSleepsInIt) {
    Life life({});
    life.computer.setUserPresent(false);
    life.advance(700);
    ASSERT_TRUE(life.creature().presence().isDozing());
    life.toggle();
    life.advance(5);
    life.computer.setUserPresent(true);
    life.advance(30);
    EXPECT_FALSE(life.isSeen());
    life.toggle();
    const auto decided = life.decisions.size();
    life.advance(60);
    EXPECT_GT(life.decisions.size(), decided);
}

TEST(ACalledCreature, StandsOnTheWideSpotNearestToTheMiddle) {
    struct Row {
        std::vector<Ground> spots;
        Point spot;
    };
    const auto floor = [](double lo, double hi, double y, bool solid = true) {
        return Ground{.span = {lo, hi}, .y = y, .solid = solid};
    };
    Life life({});
    const double middle = life.pet().walkArea().middle();
    const double ground = life.pet().floorY(middle);
    for (const auto& [spots, spot] : std::vector<Row>{
             {{}, {middle, ground}},
             {{floor(600, 720, 50)}, {middle, ground}},        // 120 is narrow
             {{floor(600, 721, 50)}, {661, 50}},               // 121 is not
             {{floor(0, 1440, 70, false)}, {middle, ground}},  // icons do not count
             {{floor(0, 300, 50), floor(1000, 1400, 60)}, {1060, 60}},
             {{floor(0, 1440, 50), floor(500, 900, 90)}, {middle, 50}},
         }) {
        life.pet().enter({.openSpots = [seen = spots] { return seen; }}, life.pet().terrain());
        EXPECT_EQ(life.creature().summonSpot(), spot);
    }
}

TEST(AnEgg, HatchesIntoSomebodyNewWhoSaysWhoTheyAre) {
    for (const bool shiny : {false, true}) {
        Life life({.stage = "egg",
                   .defaults = {{"pet.friendship", 3.0},
                                {"pet.exp", 5000.0},
                                {"pet.form", std::string("coralis")},
                                {"QuibShiny", shiny}}});
        EXPECT_FALSE(life.isSeen());
        life.toggle();
        life.advance(3.7);
        EXPECT_FALSE(life.isSeen());
        life.advance(0.1);
        EXPECT_TRUE(life.isSeen());
        life.advance(1);
        const Companion& born = life.creature();
        EXPECT_TRUE(born.presence().isOut());
        EXPECT_EQ(born.stage(), Stage::mizzle);
        EXPECT_EQ(born.identity().shiny, shiny);
        EXPECT_EQ(born.needs().friendship, 120);
        EXPECT_EQ(born.identity().exp, 0);
        EXPECT_EQ(born.identity().form, std::nullopt);
        EXPECT_EQ(life.computer.defaults.string("pet.stage"), "mizzle");
        life.expectClean();
        EXPECT_TRUE(life.decisions.empty());
        life.advance(11.2);
        EXPECT_FALSE(life.decisions.empty());
        const std::string who = "Mizzle " + born.identity().gender;
        EXPECT_TRUE(life.hasSaid(shiny ? "A shiny " + who + " hatched! ✨"
                                       : who + " hatched from the Egg!"));
        EXPECT_TRUE(life.hasSaid("Its ability is Lightning Rod!"));
        EXPECT_TRUE(
            life.hasSaid("It has a " + std::string(born.identity().nature.name) + " nature."));

        life.creature().restart();
        EXPECT_EQ(life.computer.defaults.string("pet.stage"), "egg");
        EXPECT_FALSE(life.computer.defaults.stored("pet.form"));
        EXPECT_FALSE(life.isSeen());
        const auto decided = life.decisions.size();
        life.advance(60);
        EXPECT_EQ(life.decisions.size(), decided);
        life.toggle();
        life.advance(20);
        EXPECT_EQ(life.creature().stage(), Stage::mizzle);
        EXPECT_GT(life.decisions.size(), decided);
    }
}

TEST(AnEvolution, FlickersEverFasterAndEndsInTheNewForm) {
    Life life({.defaults = {{"pet.exp", expForLevel20 + 100}}});
    life.advance(5);
    life.creature().evolve({.to = Stage::thrummet});
    life.advance(3.9);
    EXPECT_EQ(life.creature().stage(), Stage::sparrel);
    EXPECT_EQ(life.pet().sprite().sublayers().size(), 1u);  // one white shape at a time
    life.advance(0.1);
    EXPECT_EQ(life.creature().stage(), Stage::thrummet);
    EXPECT_EQ(std::get<Picture>(life.pet().sprite().model().content).image,
              life.creature().a().idle.image);
    const Layer& light = *life.pet().sprite().sublayers().front();
    EXPECT_GT(light.presentation().opacity, 0.5);  // the new form comes out of the light
    EXPECT_EQ(light.model().opacity, 0);
    EXPECT_EQ(life.computer.defaults.string("pet.stage"), "thrummet");
    EXPECT_TRUE(life.hasSaid("Sparrel evolved into Thrummet!"));
    EXPECT_TRUE(life.creature().presence().isBusy());
    life.advance(3.8);
    EXPECT_FALSE(life.creature().presence().isBusy());
    EXPECT_TRUE(life.pet().isInteractive());
    EXPECT_TRUE(life.pet().sprite().sublayers().empty());
    const auto decided = life.decisions.size();
    life.advance(60);
    EXPECT_GT(life.decisions.size(), decided);
}

TEST(AnEvolution, WaitsForACreatureThatIsNotFree) {
    Life life({});
    life.computer.setUserPresent(false);
    life.advance(700);
    ASSERT_TRUE(life.creature().presence().isDozing());
    const Evolution offer{.to = Stage::thrummet, .form = "coralis"};
    CompanionProbe::offer(life.creature()) = offer;
    life.creature().answerEvolution(true);
    EXPECT_EQ(life.creature().offer(), offer);
    EXPECT_EQ(life.creature().stage(), Stage::sparrel);
}

TEST(AMizzle, AsksToEvolveOnceItIsFondEnough) {
    struct Row {
        double friendship;  // a level up adds 2
        bool offered;
    };
    for (const auto& [friendship, offered] : std::vector<Row>{{217, false}, {218, true}}) {
        Life life({.stage = "mizzle", .defaults = {{"pet.friendship", friendship}}});
        life.advance(1);
        life.creature().gainEXP(1);
        EXPECT_EQ(life.creature().offer().has_value(), offered);
        EXPECT_EQ(life.creature().menu().has_value(), offered);
        EXPECT_EQ(life.computer.notifications.delivered.contains("pet.evolve"), offered);
    }
}

TEST(AnOffer, IsAnsweredInTheMenuOrTheNotification) {
    Life life({.stage = "mizzle", .defaults = {{"pet.friendship", 230.0}}});
    life.advance(1);
    life.creature().gainEXP(1);
    const auto menu = life.creature().menu();
    ASSERT_TRUE(menu);
    ASSERT_EQ(menu->items.size(), 2u);
    EXPECT_EQ(menu->items[0].title, "Evolve into Sparrel");
    EXPECT_EQ(menu->items[1].title, "Not Now");
    menu->items[1].run();
    EXPECT_FALSE(life.creature().offer());
    EXPECT_FALSE(life.computer.notifications.delivered.contains("pet.evolve"));
    EXPECT_TRUE(life.hasSaid("Mizzle stays as it is, for now."));

    life.creature().gainEXP(1);
    ASSERT_TRUE(life.creature().offer());
    life.computer.notifications.onResponse({.action = "evolve", .pet = "umbrool"});
    life.advance(0.1);
    EXPECT_TRUE(life.creature().offer());  // that was somebody else's
    life.computer.notifications.onResponse({.action = "evolve"});
    life.advance(10);
    EXPECT_EQ(life.creature().stage(), Stage::sparrel);
}

TEST(AGloamer, TakesTheLoopAndAWispulTheLevel) {
    Life wispul({.store = "umbrool", .stage = "wispul", .defaults = {{"umbrool.exp", 1e6}}});
    CompanionProbe::identity(wispul.creature()).exp = expForLevel(growthRate(Stage::wispul), 24);
    wispul.advance(1);
    wispul.creature().gainEXP(1);
    ASSERT_TRUE(wispul.creature().offer());
    EXPECT_EQ(wispul.creature().offer()->to, Stage::gloamer);

    Life gloamer({.store = "umbrool", .stage = "gloamer"});
    gloamer.advance(1);
    gloamer.creature().received(Item::tetherLoop);
    ASSERT_TRUE(gloamer.creature().offer());
    EXPECT_EQ(gloamer.creature().offer()->to, Stage::umbrool);
    gloamer.advance(0.1);
    bool asked = false;
    for (const SimulatedPanel* panel : gloamer.computer.shownPanels()) {
        asked = asked || panel->openMenu.has_value();
    }
    EXPECT_TRUE(asked);
}

TEST(ACamera, SendsInWhoIsOutAndOnlyThemOutAgain) {
    Life life({});
    life.advance(5);
    life.computer.setCameras({true});
    life.advance(3);
    EXPECT_FALSE(life.creature().presence().isOut());
    life.computer.setCameras({false});
    life.advance(3);
    EXPECT_TRUE(life.creature().presence().isOut());
    life.toggle();
    life.advance(5);
    life.computer.setCameras({true});
    life.advance(3);
    life.computer.setCameras({false});
    life.advance(10);
    EXPECT_FALSE(life.creature().presence().isOut());  // the user had put it away
}

TEST(ACall, ThatTheUserCutShortForACreatureIsForgotten) {
    Life life({});
    life.advance(5);
    life.computer.setCameras({true});
    life.advance(5);
    life.computer.defaults.set("hideOnCamera", false);
    life.computer.setCameras({false});
    life.advance(5);
    EXPECT_FALSE(life.creature().presence().isOut()) << "nothing is done while that is off";
    life.toggle();
    life.advance(5);
    ASSERT_TRUE(life.creature().presence().isOut());
    life.computer.defaults.set("hideOnCamera", true);
    life.toggle();
    life.advance(20);
    EXPECT_FALSE(life.creature().presence().isOut()) << "it was put away by hand";
}

TEST(ACall, LetsOutAtItsEndWhoWasSentBackByHandMeanwhile) {
    Life life({});
    life.advance(5);
    life.computer.setCameras({true});
    life.advance(5);
    life.toggle();
    life.advance(5);
    life.toggle();
    life.advance(5);
    life.computer.setCameras({false});
    life.advance(5);
    EXPECT_TRUE(life.creature().presence().isOut());
}

TEST(StartingOver, LeavesNothingOfTheLifeBefore) {
    Life life({.defaults = {{"pet.exp", expForLevel20 + 100}, {"pet.hunger", 0.95}}});
    life.advance(60);
    life.creature().received(Item::stormPebble);
    ASSERT_TRUE(life.creature().offer());
    life.creature().offerZap({"/d/a"}, "", "");
    life.app->open({"quibbits://failed"});
    life.advance(1);
    ASSERT_TRUE(life.creature().presence().isFainted());
    life.creature().restart();
    EXPECT_FALSE(life.creature().offer());
    EXPECT_FALSE(life.computer.notifications.delivered.contains("pet.hungry"));
    EXPECT_FALSE(life.computer.notifications.delivered.contains("pet.evolve"));
    life.toggle();
    life.advance(4.8);
    ASSERT_TRUE(life.creature().presence().isReady());
    EXPECT_EQ(life.creature().needs().hunger, 0.3);
    EXPECT_EQ(life.creature().needs().energy, 0.8);
    life.advance(11);
    EXPECT_TRUE(life.hasSaid("Its ability is Lightning Rod!")) << "nobody has come round meanwhile";
    EXPECT_TRUE(life.hasSaid("It has a " + std::string(life.creature().identity().nature.name) +
                             " nature."));
}

TEST(FilesOnOffer, GoToTheTrashOnlyWhenTheUserSaysSo) {
    Life life({});
    life.advance(5);
    std::vector<std::string> paths;
    for (const char* name : {"/d/a", "/d/b", "/d/c", "/d/d", "/d/e"}) {
        paths.emplace_back(name);
        if (paths.back() != "/d/b") life.computer.files.files.insert(name);
    }
    life.creature().offerZap(paths, "Old files", "They are old.");
    EXPECT_EQ(life.computer.notifications.delivered.size(), 1u);
    life.computer.notifications.onResponse({.action = "keep", .pet = "pet", .paths = paths});
    life.advance(1);
    EXPECT_TRUE(life.computer.files.trash.empty());
    life.computer.notifications.onResponse({.action = "zap", .pet = "pet", .paths = paths});
    life.advance(30);
    EXPECT_EQ(life.computer.files.trash.size(), 4u);
}

/// Whatever a user and a machine may do to creatures, at any moment.
void meddle(Life& life, Random& chance, int round) {
    static const std::vector<std::string> words{"focus", "unfocus", "fail",
                                                "done",  "pass",    "hello"};
    SimulatedComputer& computer = life.computer;
    Companion& who = *life.app->party()[chance.index(2)];
    switch (chance.index(19)) {
        case 0:
        case 1: return who.toggleBall({chance.uniform(0, 1440), 900});
        case 2: return who.restart();
        case 3: return who.evolve({.to = line(who.firstStage())[1 + chance.index(3)]});
        case 4: return who.answerEvolution(chance.coin());
        case 5: return computer.setCameras({chance.coin()});
        case 6: {
            const Point at = who.pet().position();
            computer.movePointer({at.x, at.y + 25});
            computer.press(MouseButton::left);
            return computer.movePointer({at.x, chance.uniform(25, 500)});
        }
        case 7: return computer.release(MouseButton::left);
        case 8:
            if (chance.index(20) > 0) return;
            computer.release(MouseButton::left);
            life.quit();
            return life.launch();
        case 9: return life.app->open({"quibbits://" + chance.pick(words)});
        case 10: {
            const std::string path = "/d/" + std::to_string(round);
            computer.files.files.insert(path);
            return who.strike({path}, {{path, {chance.uniform(0, 1440), 300}}});
        }
        case 11: return computer.setScreen({chance.coin() ? 1440.0 : 1000.0, 900}, 1);
        case 12: return computer.setBattery(chance.coin() ? 3 : 60, chance.coin());
        case 13: return computer.setUserPresent(chance.coin());
        case 14: {
            PartyDial& dial = *life.app->dial();
            if (!dial.isOpen()) return dial.open();
            return dial.view()->onPick(static_cast<int>(chance.index(2)));
        }
        case 15: return who.received(chance.pick(allItems));
        case 16:
            computer.defaults.set("overApps", chance.coin());
            computer.putWindow("w", {.process = 9, .frame = Rect{300, 50, 700, 400}});
            return computer.bringToFront({.id = "editor", .process = 9});
        case 17: {
            DialView* view = life.app->dial()->view();
            if (!view || view->items().empty()) return;
            view->mouseDown(view->items().front().rect.center());
            return view->mouseDragged();
        }
        case 18: return computer.setHeat(ThermalState{static_cast<int>(chance.index(4))});
    }
}

void makePeace(Life& life) {
    life.computer.release(MouseButton::left);
    life.app->dial()->close();
    life.computer.setCameras({false});
    life.computer.setHeat(ThermalState::nominal);
    life.computer.setBattery(60, false);
    life.computer.setUserPresent(true);
    life.app->open({"quibbits://unfocus"});
}

TEST(BallsAndEvolutions, InAnyOrderLeaveNobodyStuckAndNothingBehind) {
    for (std::uint64_t seed = 1; seed <= 6; ++seed) {
        Life life({.seed = seed});
        Random chance(seed * 77);
        for (int round = 0; round < 3500; ++round) {
            meddle(life, chance, round);
            life.advance(chance.index(12) == 0 ? chance.uniform(0, 400) : chance.uniform(0, 2.5));
        }
        makePeace(life);
        life.advance(60);
        life.expectClean();
        for (const auto& who : life.app->party()) {
            EXPECT_FALSE(who->presence().isBusy() || who->presence().isHeld() ||
                         who->presence().isDozing())
                << seed;
            EXPECT_EQ(who->presence().isOut(), !who->pet().node().model().hidden);
            if (who->stage() == Stage::egg) continue;
            if (!who->presence().isOut()) who->toggleBall({});
            life.advance(20);
            const Date before = who->why().at;
            life.advance(600);
            EXPECT_GT(who->why().at, before) << seed << " " << who->store();
        }
    }
}

}  // namespace
}  // namespace quibbits
