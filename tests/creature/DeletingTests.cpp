// Files that the user has given are gone in the end, whatever befalls the creature meanwhile.

#include <gtest/gtest.h>

#include <algorithm>

#include "support/DialTap.h"
#include "support/LivingCreature.h"

namespace quibbits {
namespace {

class Destroyer : public LivingCreature {
public:
    explicit Destroyer(const std::string& store)
        : LivingCreature({.store = store,
                          .stage = store == "pet" ? "sparrel" : "gloamer",
                          .charging = false,
                          .painting = true},
                         DrawnSheets::ofTrickster()) {
        advance(20);
        creature().stop([this] { creature().sit(3, [this] { creature().think(); }); });
        advance(1);
    }
    std::vector<std::string> make(const std::vector<std::string>& names) {
        std::vector<std::string> paths;
        for (const std::string& name : names) {
            paths.push_back("/d/" + name);
            computer.files.files.insert(paths.back());
        }
        return paths;
    }
    Point body() { return pet().frame().center(); }
    /// With Alt held, as a user drops files on a creature; the pointer stays on it.
    void drop(const std::vector<std::string>& paths) {
        computer.pointer.keys.option = true;
        computer.movePointer(body());
        EXPECT_TRUE(computer.dropOnStage({.location = body(), .files = paths}));
        computer.pointer.keys.option = false;
    }
    void answerDelete(const std::vector<std::string>& paths) {
        computer.notifications.onResponse({.action = "zap", .pet = "pet", .paths = paths});
        advance(0);
    }
    bool areGone(const std::vector<std::string>& paths) const {
        return std::ranges::all_of(paths, [this](const std::string& path) {
            return std::ranges::count(computer.files.trash, path) == 1;
        });
    }
    /// The lines that were said since then.
    bool said(const std::string& part) const {
        return std::ranges::any_of(utterances, [&](const Utterance& each) {
            return each.caption && each.caption->find(part) != std::string::npos;
        });
    }
};

class Deleting : public ::testing::TestWithParam<const char*> {};

TEST_P(Deleting, IsNotDisturbedByThePointerThatDroppedTheFiles) {
    Destroyer life(GetParam());
    for (int times = 0; times < 2; ++times) {
        const auto paths = life.make({"a" + std::to_string(times), "b" + std::to_string(times),
                                      "c" + std::to_string(times)});
        life.utterances.clear();
        const double exp = life.creature().identity().exp;
        life.drop(paths);
        for (int i = 0; i < 300 && life.said("") && !life.areGone(paths); ++i) {
            life.computer.movePointer(life.body() + Vector{i % 2 * 3.0, 0});
            life.app->stage()->itemDragMoved(life.body());
            life.advance(0.1);
        }
        EXPECT_TRUE(life.areGone(paths)) << times;
        EXPECT_GT(life.creature().identity().exp, exp) << "each was struck, with its reward";
        for (int i = 0; i < 100 && !life.said("!"); ++i) life.advance(0.1);
        life.advance(4);
        life.app->stage()->itemDragMoved(std::nullopt);
        life.computer.movePointer({0, 890});
        life.advance(40);
    }
    life.untilDecisions(3);
}

TEST_P(Deleting, GoesOnToTheEndWhateverCutsTheAttack) {
    struct Row {
        const char* what;
        std::function<void(Destroyer&)> happens;
    };
    for (const auto& [what, happens] : std::vector<Row>{
             {"the charger", [](Destroyer& d) { d.computer.setBattery(60, true); }},
             {"an empty battery", [](Destroyer& d) { d.computer.setBattery(3, false); }},
             {"a word", [](Destroyer& d) { d.app->open({"quibbits://celebrate"}); }},
             {"a greeting and the quiet",
              [](Destroyer& d) {
                  d.app->open({"quibbits://hello", "quibbits://focus"});
              }},
             {"no network", [](Destroyer& d) { d.computer.setNetwork(false); }},
             {"a call", [](Destroyer& d) { d.computer.setCameras({true}); }},
             {"the hand",
              [](Destroyer& d) {
                  d.computer.movePointer(d.body());
                  d.computer.press(MouseButton::left);
              }},
             {"the dial", [](Destroyer& d) { tapSlot(d.computer, d.creature().store() != "pet"); }},
             {"a smaller screen",
              [](Destroyer& d) {
                  d.computer.setScreen({500, 400}, 1);
              }},
             {"a new beginning", [](Destroyer& d) { d.creature().restart(); }},
             {"the end of the program",
              [](Destroyer& d) {
                  d.app->applicationWillTerminate();
                  d.quit();
              }},
         }) {
        for (const Seconds moment : {0.01, 0.3, 0.55, 1.3, 2.4}) {
            Destroyer life(GetParam());
            const auto paths = life.make({"a", "b", "c", "d"});
            life.drop(paths);
            life.advance(moment);
            happens(life);
            life.advance(30);
            EXPECT_TRUE(life.areGone(paths)) << what << " after " << moment;
        }
    }
}

TEST_P(Deleting, TakesFilesThatComeMeanwhileAfterTheOthers) {
    Destroyer life(GetParam());
    const auto first = life.make({"a", "b"});
    const auto second = life.make({"c"});
    const auto third = life.make({"d", "e"});
    life.answerDelete(first);
    life.advance(0.2);
    life.answerDelete(second);
    life.advance(0.1);
    life.drop(third);
    life.answerDelete(second);  // once more, which changes nothing
    life.advance(0.1);
    EXPECT_TRUE(life.computer.files.trash.empty()) << "none is thrown away without a show";
    life.advance(60);
    EXPECT_EQ(life.computer.files.trash,
              (std::vector<std::string>{"/d/a", "/d/b", "/d/c", "/d/d", "/d/e"}));
    life.untilDecisions(2);
}

INSTANTIATE_TEST_SUITE_P(OfBothLines, Deleting, ::testing::Values("pet", "umbrool"),
                         [](const auto& line) { return std::string(line.param); });

}  // namespace
}  // namespace quibbits
