// Whole stretches of life with the pictures that ship: what a creature does with its day, and what
// showing it takes.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "desktop/files/DiskResources.h"
#include "simulator/Player.h"
#include "support/FlatText.h"

namespace quibbits {
namespace {

Scenario scenario(const std::string& text) {
    auto parsed = parseScenario(text);
    if (const auto* error = std::get_if<ScenarioError>(&parsed)) {
        ADD_FAILURE() << "line " << error->line << ": " << error->reason;
        return {};
    }
    return std::get<Scenario>(std::move(parsed));
}

class Life : public ::testing::Test {
protected:
    /// The trace of a scenario, a JSON value a line.
    std::vector<Json> trace(const std::string& text) {
        std::ostringstream out;
        const Scenario events = scenario(text);
        Player player(events, {.trace = &out}, resources, ruler);
        player.play();
        std::vector<Json> lines;
        std::istringstream in(out.str());
        for (std::string line; std::getline(in, line);) lines.push_back(*Json::parse(line).value);
        return lines;
    }
    static std::string word(const Json& line, std::string_view key) {
        const Json* value = line.find(key);
        const auto* text = value ? value->as<std::string>() : nullptr;
        return text ? *text : "";
    }
    static std::map<std::string, int> choices(const std::vector<Json>& lines) {
        std::map<std::string, int> count;
        for (const Json& line : lines) {
            if (word(line, "event") == "decision") ++count[word(line, "choice")];
        }
        return count;
    }

    DiskResources resources{{QUIBBITS_SHEETS_DIR}};
    FlatText ruler;
};

TEST_F(Life, OfEveryScenarioThatShipsGoesAsTheScenarioExpects) {
    int played = 0;
    for (const auto& file : std::filesystem::directory_iterator(QUIBBITS_SOURCE_DIR "/scenarios")) {
        std::ifstream in(file.path());
        const Scenario events = scenario({std::istreambuf_iterator<char>(in), {}});
        for (const bool painting : {false, true}) {
            Player player(events, {.painting = painting}, resources, ruler);
            player.play();
            EXPECT_EQ(player.disappointments(), std::vector<std::string>{}) << file.path();
        }
        ++played;
    }
    EXPECT_GE(played, 5);
}

/// Six hours on battery, from an evening into the night: the scenario that ships as an example.
std::string evening() {
    std::ifstream in(QUIBBITS_SOURCE_DIR "/scenarios/evening.jsonl");
    return {std::istreambuf_iterator<char>(in), {}};
}

TEST_F(Life, SixHoursOnBatteryHoldStrollsSitsRestsAndNapsWithReasonsThatMultiplyToTheScores) {
    const auto day = trace(evening());
    auto done = choices(day);
    for (const char* expected : {"patrol", "sit", "rest", "nap", "askForBerry"}) {
        EXPECT_GT(done[expected], 0) << expected;
    }
    std::map<std::string, double> bases;
    int scored = 0;
    for (const Json& line : day) {
        if (word(line, "event") != "decision") continue;
        for (const Json& option : *line.find("options")->as<Json::Array>()) {
            double product = 1;
            for (const Json& reason : *option.find("reasons")->as<Json::Array>()) {
                product *= *(*reason.as<Json::Array>())[1].number();
            }
            if (product == 0) {
                EXPECT_EQ(*option.find("score")->number(), 0);
                continue;
            }
            // The rest is the option's base, which never changes for one creature by day.
            const double base = *option.find("score")->number() / product;
            const auto [known, isNew] = bases.emplace(word(option, "intent"), base);
            EXPECT_NEAR(base, known->second, 1e-9) << word(option, "intent");
            ++scored;
        }
    }
    EXPECT_GT(scored, 1000);
}

TEST_F(Life, NapsAreLongerAfterEleven) {
    double fellAsleep = -1;
    int early = 0;
    int late = 0;
    constexpr double eleven = 3 * 3600;  // the scenario begins at eight
    for (const Json& line : trace(evening())) {
        if (word(line, "event") != "decision") continue;
        const double now = *line.find("t")->number();
        if (fellAsleep >= 0) {
            const double lasted = now - fellAsleep;  // waking and stretching included
            const bool night = fellAsleep >= eleven;
            ++(night ? late : early);
            EXPECT_GE(lasted, night ? 60 : 30);
            EXPECT_LE(lasted, (night ? 180 : 90) + 5);
        }
        fellAsleep = word(line, "choice") == "nap" ? now : -1;
    }
    EXPECT_GT(early, 0);
    EXPECT_GT(late, 0);
}

TEST_F(Life, IsTheSameFromTheSameSeedAndHoweverTimeIsCutUp) {
    const Scenario events = scenario(evening());
    const auto play = [&](Seconds piece) {
        std::ostringstream out;
        Player player(events, {.trace = &out, .frameEvery = piece}, resources, ruler);
        player.play();
        return out.str();
    };
    const std::string whole = play(0);
    EXPECT_EQ(play(0), whole);
    EXPECT_EQ(play(0.7), whole);
}

TEST_F(Life, IsFilmedFromTheComputerAsTheProgramFindsIt) {
    const Scenario events = scenario(R"({"at":0,"event":"begin","seed":1})"
                                     "\n"
                                     R"({"at":0,"event":"screen","width":640,"height":340})"
                                     "\n"
                                     R"({"at":1,"event":"end"})");
    std::vector<double> widths;
    const auto shoot = [&](SimulatedComputer& computer) {
        widths.push_back(computer.screens.screen->frame.width);
    };
    Player player(events, {.frameEvery = 0.25, .onFrame = shoot}, resources, ruler);
    player.play();
    EXPECT_EQ(widths, std::vector<double>(5, 640));
}

/// What painting takes while one thing is being done.
struct Cost {
    double repaints = 0;  // a second
    double wakeUps = 0;   // a second
};

class Painting : public Life {
protected:
    Cost measure(const std::function<void(Companion&)>& begin, Seconds settle, Seconds during) {
        const Scenario events = scenario(
            R"({"at":0,"event":"defaults","set":{"pet.stage":"sparrel","faces":false,"chatter":false}})"
            "\n"
            R"({"at":0,"event":"battery","level":60,"charging":false})");
        Player player(events, {.painting = true}, resources, ruler);
        player.play();
        Companion& creature = *player.app()->party()[0];
        SimulatedComputer& computer = player.computer();
        creature.stop([] {});
        computer.runLoop.advance(5);
        begin(creature);
        computer.runLoop.advance(settle);
        const SimulatedPanel& panel = *computer.shownPanels().front();
        const auto repaints = panel.repaints;
        const auto wakeUps = computer.runLoop.wakeUps();
        computer.runLoop.advance(during);
        return {static_cast<double>(panel.repaints - repaints) / during,
                static_cast<double>(computer.runLoop.wakeUps() - wakeUps) / during};
    }
};

TEST_F(Painting, ASittingCreatureIsNotRepaintedAndHardlyWakesTheProgram) {
    const Cost cost = measure([](Companion& c) { c.sit(1000, [] {}); }, 1, 600);
    EXPECT_EQ(cost.repaints, 0);
    EXPECT_LE(cost.wakeUps, 1);
}

TEST_F(Painting, AStrollTakesTwentyRepaintsASecondAtMost) {
    const Cost cost = measure(
        [](Companion& c) {
            c.pet().drag({100, 0});
            c.go({.to = {1300, 0}, .speed = 45}, [] {});
        },
        1, 20);
    EXPECT_LE(cost.repaints, 20);
    EXPECT_GE(cost.repaints, 10) << "it should be seen to walk";
}

TEST_F(Painting, ANapIsRepaintedOnlyWhenThePictureChanges) {
    const Cost cost = measure([](Companion& c) { c.pet().play(c.a().sleep); }, 1, 60);
    EXPECT_LE(cost.repaints, 3);
    EXPECT_LE(cost.wakeUps, 4);
}

TEST_F(Painting, NothingIsLeftBehindAfterHoursOfLife) {
    const Scenario events = scenario(R"({"at":0,"event":"defaults","set":{"pet.stage":"sparrel"}})"
                                     "\n"
                                     R"({"at":0,"event":"battery","level":60,"charging":false})");
    Player player(events, {.painting = true}, resources, ruler);
    player.play();
    Companion& creature = *player.app()->party()[0];
    std::size_t most = 0;
    std::size_t pending = 0;
    for (int hour = 0; hour < 6; ++hour) {
        player.computer().runLoop.advance(3600);
        most = std::max(most, creature.pet().node().sublayers().size());
        pending = std::max(pending, player.computer().runLoop.pendingJobs());
    }
    EXPECT_LE(most, 8u);
    EXPECT_LE(pending, 160u);
}

}  // namespace
}  // namespace quibbits
