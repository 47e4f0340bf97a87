#include <gmock/gmock.h>

#include "codecs/Json.h"
#include "commands/Answers.h"
#include "support/LivingCreature.h"

namespace quibbits::commands {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

struct AnswersTest : testing::Test {
    Reply ask(const std::string& line) { return answers().answer(line); }
    Json asked(const std::string& line) {
        const auto json = Json::parse(ask(line).text);
        EXPECT_TRUE(json) << line;
        return json.value.value_or(Json());
    }
    Answers answers() {
        return {*life.app, computer, {.version = "1.2.3", .process = 77, .display = ":9"}};
    }
    LivingCreature life{{}};
    const Computer computer = life.computer.computer();
    std::vector<std::string> struck;
};

TEST_F(AnswersTest, WhyTellsTheChoiceWithEveryOptionAndTheReasonsThatMultiplyToItsScore) {
    life.computer.runLoop.advance(120);
    const Why why = life.creature().why();
    ASSERT_TRUE(why.choice);
    const Json json = asked("why --json");
    EXPECT_EQ(*json.find("choice"), Json(std::string(rawValue(*why.choice))));
    const auto& options = *json.find("options")->as<Json::Array>();
    ASSERT_EQ(options.size(), why.options.size());
    for (std::size_t i = 0; i < options.size(); ++i) {
        EXPECT_EQ(options[i].find("score")->number(), why.options[i].score);
        EXPECT_EQ(options[i].find("reasons")->as<Json::Array>()->size(),
                  why.options[i].reasons.size());
    }
    const auto text = ask("why").text;
    EXPECT_THAT(text, HasSubstr("* " + std::string(row(*why.choice).label)));
    EXPECT_THAT(text, HasSubstr(why.options.front().reasons.begin()->label));
}

TEST_F(AnswersTest, AWordIsHeardOrTheReasonWhyNotIsSaid) {
    EXPECT_EQ(ask("celebrate"), Reply{});
    EXPECT_EQ(ask("focus"), Reply{});
    EXPECT_TRUE(life.creature().isQuiet());
    EXPECT_EQ(*asked("status --json").find("focus"), Json(true));
    EXPECT_EQ(ask("hello").status, failed);
    EXPECT_THAT(ask("hello").text, HasSubstr("focus"));
    EXPECT_EQ(ask("unfocus"), Reply{});
    EXPECT_FALSE(life.creature().isQuiet());
    life.creature().stayIn();
    EXPECT_THAT(ask("done").text, HasSubstr("nobody is out"));
    EXPECT_EQ(ask("why").status, failed);
    EXPECT_EQ(*asked("status --json").find("out"), Json());
    for (const char* line : {"nonsense", "%zz", "", "strike"}) EXPECT_NE(ask(line).status, done);
}

TEST_F(AnswersTest, OnlyFilesThatWereNamedAreStruckAndOnlyByACreatureThatCan) {
    auto& files = life.computer.files;
    files.onTrash = [this](const std::string& path, bool) { struck.push_back(path); };
    const std::string odd = "/home/a b\n%41\xff";
    const auto strike = [&](const std::vector<std::string>& paths) {
        std::vector<std::string> words{"strike"};
        words.insert(words.end(), paths.begin(), paths.end());
        const auto reply = ask(lineOf(words));
        life.computer.runLoop.advance(60);
        return reply;
    };
    EXPECT_EQ(strike({"/home/one", odd}), Reply{});
    EXPECT_THAT(struck, UnorderedElementsAre("/home/one", odd));
    struck.clear();

    for (const char* bad : {"relative", "/", "../up"}) {
        EXPECT_EQ(strike({"/home/two", bad}).status, failed) << bad;
    }
    life.computer.defaults.set("thunderbolt", false);
    EXPECT_THAT(strike({"/home/two"}).text, HasSubstr("switched off"));
    life.computer.defaults.set("thunderbolt", true);
    ask("focus");
    EXPECT_THAT(strike({"/home/two"}).text, HasSubstr("asleep"));
    ask("unfocus");
    life.creature().stayIn();
    EXPECT_THAT(strike({"/home/two"}).text, HasSubstr("nobody is out"));
    EXPECT_THAT(struck, IsEmpty());
}

TEST_F(AnswersTest, QuitEndsTheProgramAndThePartyIsListed) {
    int ends = 0;
    life.app->onTerminate = [&] { ++ends; };
    EXPECT_EQ(ask("quit"), Reply{});
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(asked("party --json").as<Json::Array>()->size(), 2u);
    EXPECT_THAT(ask("party").text, HasSubstr("an egg"));
    EXPECT_THAT(ask("status").text, HasSubstr("1.2.3 runs as process 77 on display :9"));
}

}  // namespace
}  // namespace quibbits::commands
