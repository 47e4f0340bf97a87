#include <gtest/gtest.h>

#include <sstream>

#include "simulator/Player.h"
#include "simulator/Scenario.h"
#include "support/DrawnSheets.h"
#include "support/FlatText.h"

namespace quibbits {
namespace {

TEST(AScenario, ThatIsMalformedIsRefusedWithItsLineAndTheReason) {
    struct Row {
        const char* text;
        int line;
        const char* reason;
    };
    for (const auto& [text, line, reason] : std::vector<Row>{
             {"{\"at\":0,\"event\":\"space\"}\n\n# a remark\nnonsense", 4, "no JSON"},
             {"[1,2]", 1, "not a JSON object"},
             {"{\"event\":\"space\"}", 1, "needs a time"},
             {"{\"at\":-1,\"event\":\"space\"}", 1, "must not be negative"},
             {"{\"at\":2,\"event\":\"space\"}\n{\"at\":1,\"event\":\"space\"}", 2, "earlier"},
             {"{\"at\":0}", 1, "needs an \"event\""},
             {"{\"at\":0,\"event\":\"dance\"}", 1, "unknown event \"dance\""},
             {"{\"at\":0,\"event\":\"space\",\"to\":3}", 1, "\"space\" has no field \"to\""},
             {"{\"at\":0,\"event\":\"pointer\",\"to\":[1]}", 1, "must be [x, y]"},
             {"{\"at\":0,\"event\":\"pointer\"}", 1, "needs the field \"to\""},
             {"{\"at\":0,\"event\":\"heat\",\"state\":\"warm\"}", 1, "\"state\" of \"heat\""},
             {"{\"at\":0,\"event\":\"dock\",\"frame\":[0,0,-1,4]}", 1, "\"frame\" of \"dock\""},
             {"{\"at\":0,\"event\":\"defaults\",\"set\":{\"a\":[1]}}", 1, "\"set\""},
             {"{\"at\":0,\"event\":\"space\"}\n{\"at\":0,\"event\":\"begin\"}", 2, "first line"},
             {R"({"at":0,"event":"begin","date":"yesterday"})", 1, "\"date\" of \"begin\""},
             {R"({"at":0,"event":"begin","date":"2026-13-01"})", 1, "\"date\" of \"begin\""},
             {R"({"at":0,"event":"begin","seed":-1})", 1, "\"seed\" of \"begin\""},
             {R"({"at":0,"event":"screen","width":1e9,"height":9})", 1, "\"width\" of \"screen\""},
             {R"({"at":0,"event":"screen","width":9,"height":0})", 1, "\"height\" of \"screen\""},
             {R"({"at":0,"event":"pointer","to":[1e300,0]})", 1, "\"to\" of \"pointer\""},
             {R"({"at":0,"event":"pointer","to":[1,0],"over":1e300})", 1, "\"over\""},
             {R"({"at":0,"event":"battery","level":1e18})", 1, "\"level\""},
             {R"({"at":0,"event":"clock","by":1e300})", 1, "\"by\""},
         }) {
        const auto parsed = parseScenario(text);
        const auto* error = std::get_if<ScenarioError>(&parsed);
        ASSERT_NE(error, nullptr) << text;
        EXPECT_EQ(error->line, line) << text;
        EXPECT_NE(error->reason.find(reason), std::string::npos) << error->reason;
    }
}

TEST(AScenario, MayUseEveryEventThatItsHelpTellsOf) {
    for (const EventSpec& spec : eventSpecs()) {
        EXPECT_FALSE(spec.help.empty()) << spec.kind;
        Json::Object line{{"at", 0}, {"event", std::string(spec.kind)}};
        for (const FieldSpec& field : spec.fields) {
            const Json::Array rectangle{1.0, 2.0, 3.0, 4.0};
            switch (field.type) {
                case FieldType::number:
                case FieldType::duration: line.emplace_back(field.name, 1.5); break;
                case FieldType::wholeNumber:
                case FieldType::count: line.emplace_back(field.name, 1); break;
                case FieldType::side: line.emplace_back(field.name, 300); break;
                case FieldType::scale: line.emplace_back(field.name, 2); break;
                case FieldType::date: line.emplace_back(field.name, "2026-03-02T10:00"); break;
                case FieldType::boolean: line.emplace_back(field.name, true); break;
                case FieldType::text: line.emplace_back(field.name, "a"); break;
                case FieldType::point: line.emplace_back(field.name, Json::Array{1.0, 2.0}); break;
                case FieldType::rectangle: line.emplace_back(field.name, rectangle); break;
                case FieldType::rectangles:
                    line.emplace_back(field.name, Json::Array(1, Json(rectangle)));
                    break;
                case FieldType::texts: line.emplace_back(field.name, Json::Array{"a"}); break;
                case FieldType::booleans: line.emplace_back(field.name, Json::Array{true}); break;
                case FieldType::object:
                    line.emplace_back(field.name, Json::Object{{"k", 1}});
                    break;
                case FieldType::values:
                    line.emplace_back(field.name, Json::Object{{"k", Json::Object{{"date", 5}}}});
                    break;
                case FieldType::icons:
                    line.emplace_back(
                        field.name, Json::Array{Json::Object{{"name", "f"}, {"frame", rectangle}}});
                    break;
                case FieldType::button: line.emplace_back(field.name, "right"); break;
                case FieldType::heat: line.emplace_back(field.name, "fair"); break;
            }
        }
        const std::string text = Json(line).dump();
        const auto parsed = parseScenario(text);
        ASSERT_TRUE(std::holds_alternative<Scenario>(parsed))
            << text << std::get<ScenarioError>(parsed).reason;

        // And playing it, alone or after a start, comes to an end.
        DrawnSheets sheets = DrawnSheets::ofWalker();
        FlatText ruler;
        Player player(std::get<Scenario>(parsed), {.lasting = 5}, sheets, ruler);
        player.play();
    }
}

std::vector<std::string> play(const std::string& text) {
    const auto parsed = parseScenario(text);
    if (!std::holds_alternative<Scenario>(parsed)) return {};
    DrawnSheets sheets = DrawnSheets::ofWalker();
    FlatText ruler;
    std::ostringstream out;
    Player player(std::get<Scenario>(parsed), {.trace = &out, .lasting = 1}, sheets, ruler);
    player.play();
    std::vector<std::string> lines;
    std::istringstream in(out.str());
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

bool holds(const std::vector<std::string>& lines, const std::string& part) {
    return std::ranges::any_of(
        lines, [&](const auto& line) { return line.find(part) != std::string::npos; });
}

TEST(AScenario, TellsWhatItExpectedInVain) {
    const auto parsed = parseScenario(R"({"at": 5, "event": "address", "url": "quibbits://hi"}
{"at": 6, "event": "expect", "seen": {"event": "start", "t": 0}}
{"at": 7, "event": "expect", "seen": {"event": "start"}}
{"at": 8, "event": "quit"}
{"at": 9, "event": "expect", "seen": {"event": "quit", "t": 8.5}}
{"at": 9, "event": "expect", "seen": {"event": "never"}})");
    DrawnSheets sheets = DrawnSheets::ofWalker();
    FlatText text;
    Player player(std::get<Scenario>(parsed), {}, sheets, text);
    player.play();
    ASSERT_EQ(player.disappointments().size(), 3u);
    EXPECT_EQ(player.disappointments()[0], R"(line 3: nothing was like {"event":"start"})");
}

TEST(AScenario, QuitsAndStartsTheProgramAgainWithItsMemory) {
    const auto lines = play(R"({"at":0,"event":"defaults","set":{"pet.stage":"sparrel"}}
{"at":1,"event":"address","url":"quibbits://focus"}
{"at":2,"event":"quit"}
{"at":3,"event":"start"}
{"at":4,"event":"position"})");
    EXPECT_EQ(std::ranges::count_if(
                  lines, [](auto& l) { return l.find("\"start\"") != std::string::npos; }),
              2);
    EXPECT_TRUE(holds(lines, R"("key":"focus.on","value":true)"));
    EXPECT_TRUE(holds(lines, R"("event":"position","pet":"umbrool")"));
}

TEST(AScenario, CarriesACreatureByTheMouse) {
    const auto lines = play(R"({"at":0,"event":"defaults","set":{"pet.stage":"sparrel"}}
{"at":0.5,"event":"pointer","to":[480,20]}
{"at":0.6,"event":"drag","to":[900,400],"over":1}
{"at":1.5,"event":"position"}
{"at":4,"event":"position"})");
    EXPECT_TRUE(holds(lines, R"("face":"surprised")"));
    std::vector<Point> places;
    for (const auto& line : lines) {
        const Json json = *Json::parse(line).value;
        const Json* pet = json.find("pet");
        if (*json.find("event")->as<std::string>() == "position" &&
            *pet->as<std::string>() == "pet") {
            places.push_back({*json.find("x")->number(), *json.find("y")->number()});
        }
    }
    ASSERT_EQ(places.size(), 2u);
    EXPECT_NEAR(places[0].x, 480 + 420 * 0.9, 8);
    EXPECT_GT(places[0].y, 300);
    EXPECT_NEAR(places[1].y, 0, 1e-6) << "it has fallen to the floor";
}

TEST(AScenario, OpensTheDialSendsACreatureInAndFeedsOneFromTheTray) {
    // The icon is where it is by itself; the dial beneath begins at 1124, 600.
    const auto lines =
        play(R"({"at":0,"event":"defaults","set":{"pet.stage":"sparrel","pet.hungryMinutes":12.5}}
{"at":0,"event":"defaults","set":{"umbrool.stage":"wispul"}}
{"at":0.5,"event":"trayClick"}
{"at":1,"event":"pointer","to":[1179,627]}
{"at":1.1,"event":"drag","to":[480,30],"over":1}
{"at":6,"event":"trayClick"}
{"at":6.5,"event":"pointer","to":[1176,830]}
{"at":6.6,"event":"press"}
{"at":6.7,"event":"release"}
{"at":12,"event":"position"})");
    std::vector<std::string> dial;
    for (const auto& line : lines) {
        if (line.find(R"("event":"dial")") != std::string::npos) {
            dial.push_back(line.substr(line.find(R"("open")")));
        }
    }
    EXPECT_EQ(dial, (std::vector<std::string>{R"("open":true})", R"("open":false})",
                                              R"("open":true})", R"("open":false})"}));
    EXPECT_TRUE(holds(lines, R"("key":"pet.hungryMinutes","value":0)")) << "it has eaten";
    EXPECT_TRUE(std::ranges::any_of(lines, [](const auto& line) {
        return line.find(R"("event":"position","pet":"pet")") != std::string::npos &&
               line.find(R"("out":false)") != std::string::npos;
    }));
}

TEST(AScenario, EndsTheProgramFromTheTraysMenuAndStartsItAgain) {
    const auto lines = play(R"({"at":1,"event":"trayRightClick"}
{"at":2,"event":"choose","title":"Dance"}
{"at":3,"event":"choose","title":"Quit Quibbits"}
{"at":4,"event":"choose","title":"Quit Quibbits"}
{"at":5,"event":"start"})");
    EXPECT_TRUE(holds(lines, R"("event":"menu","lines":["Settings…","","Quit Quibbits"])"));
    EXPECT_TRUE(holds(lines, R"("event":"choose","title":"Dance","done":false)"));
    EXPECT_TRUE(holds(lines, R"("event":"quit")"));
    EXPECT_EQ(std::ranges::count_if(
                  lines, [](auto& l) { return l.find("\"done\":true") != std::string::npos; }),
              1);
    EXPECT_TRUE(std::ranges::any_of(lines, [](const auto& line) {
        return line.find(R"("t":5.0)") != std::string::npos &&
               line.find(R"("event":"start")") != std::string::npos;
    }));
}

}  // namespace
}  // namespace quibbits
