// Questions that a notification asks and a button answers: across the end of the program, and on a
// desktop whose notifications have no buttons.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "codecs/Json.h"
#include "desktop/files/DiskResources.h"
#include "simulator/Player.h"
#include "support/FlatText.h"

namespace quibbits {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* copies = R"(
{"at": 0, "event": "begin", "seed": 3, "date": "2026-03-02T10:00:00"}
{"at": 0, "event": "defaults", "set": {"onboarded": true, "pet.stage": "sparrel"}}
{"at": 0, "event": "file", "paths": ["/home/user/Downloads/a.txt", "/home/user/Downloads/a 2.txt"], "size": 5, "contents": "a"}
)";
constexpr const char* copyOffer = "pet.zap-/home/user/Downloads/a 2.txt";

class Offers : public testing::Test {
protected:
    /// Plays on the machine with the copies, and keeps the trace.
    void play(const std::string& events) {
        auto parsed = parseScenario(copies + events);
        ASSERT_TRUE(std::holds_alternative<Scenario>(parsed));
        std::ostringstream out;
        Player player(std::get<Scenario>(parsed), {.trace = &out}, resources, ruler);
        player.play();
        std::istringstream in(out.str());
        lines.clear();
        for (std::string line; std::getline(in, line);) lines.push_back(*Json::parse(line).value);
    }
    /// What one member is of every event of a kind.
    std::vector<std::string> all(const std::string& event, const std::string& member) const {
        std::vector<std::string> found;
        for (const Json& line : lines) {
            if (*line.find("event")->as<std::string>() != event) continue;
            if (const Json* value = line.find(member)) found.push_back(*value->as<std::string>());
        }
        return found;
    }

    DiskResources resources{{QUIBBITS_SHEETS_DIR}};
    FlatText ruler;
    std::vector<Json> lines;
};

TEST_F(Offers, WithoutAnAnswerAreTakenBackAtTheEndAndMadeAgainAtTheNextStart) {
    play(
        R"({"at": 15, "event": "file", "paths": ["/home/user/Downloads/film.mkv"], "size": 600000000}
{"at": 20, "event": "quit"}
{"at": 21, "event": "answer", "identifier": "pet.zap-/home/user/Downloads/a 2.txt", "action": "zap"}
{"at": 30, "event": "start"}
{"at": 45, "event": "answer", "identifier": "pet.zap-/home/user/Downloads/film.mkv", "action": "zap"}
{"at": 60, "event": "end"})");
    const std::string filmOffer = "pet.zap-/home/user/Downloads/film.mkv";
    EXPECT_THAT(all("withdrawn", "identifier"), ElementsAre(copyOffer, filmOffer));
    EXPECT_THAT(all("notification", "identifier"),
                ElementsAre(copyOffer, filmOffer, copyOffer, filmOffer))
        << "what is big is no news at the next start, but the question is still open";
    EXPECT_THAT(all("trash", "path"), ElementsAre("/home/user/Downloads/film.mkv"));
}

TEST_F(Offers, ThatWereAnsweredOrPutAwayAreNeverMadeAgain) {
    for (const std::string answer : {"keep", "zap", "closed"}) {
        play(
            R"({"at": 12, "event": "answer", "identifier": "pet.zap-/home/user/Downloads/a 2.txt", "action": ")" +
            answer + R"("}
{"at": 30, "event": "quit"}
{"at": 31, "event": "file", "paths": ["/home/user/Downloads/a 2.txt"], "size": 5, "contents": "a"}
{"at": 32, "event": "start"}
{"at": 60, "event": "end"})");
        EXPECT_THAT(all("notification", "identifier"), ElementsAre(copyOffer)) << answer;
        EXPECT_EQ(all("trash", "path").size(), answer == "zap" ? 1u : 0u) << answer;
    }
}

TEST_F(Offers, WithoutButtonsSayWhatToDoInsteadAndOnlyOnce) {
    play(R"({"at": 1, "event": "buttons", "shown": false}
{"at": 20, "event": "quit"}
{"at": 30, "event": "start"}
{"at": 60, "event": "end"})");
    ASSERT_THAT(all("notification", "identifier"), ElementsAre(copyOffer));
    EXPECT_THAT(all("notification", "body")[0], HasSubstr("Thunderbolt them all? Drop "));
    EXPECT_THAT(all("notification", "body")[0], HasSubstr("Alt"));
    EXPECT_THAT(all("withdrawn", "identifier"), IsEmpty()) << "it is no question";
}

TEST_F(Offers, ThatNobodyShowedAreMadeWhenSomebodyDoes) {
    play(R"({"at": 1, "event": "refuse", "reason": "no service"}
{"at": 20, "event": "quit"}
{"at": 25, "event": "refuse", "reason": ""}
{"at": 30, "event": "start"}
{"at": 60, "event": "end"})");
    EXPECT_THAT(all("notification", "identifier"), ElementsAre(copyOffer));
}

TEST_F(Offers, OfFilesThatHaveChangedSinceLeaveThemAndSaySo) {
    play(
        R"({"at": 15, "event": "file", "paths": ["/home/user/Downloads/a 2.txt"], "size": 7, "contents": "another"}
{"at": 20, "event": "answer", "identifier": "pet.zap-/home/user/Downloads/a 2.txt", "action": "zap"}
{"at": 60, "event": "end"})");
    EXPECT_THAT(all("trash", "path"), IsEmpty());
    EXPECT_THAT(all("notification", "identifier"), ElementsAre(copyOffer, "downloads.changed"));
}

TEST_F(Offers, OfFilesThatAreGoneByThenAreNotMadeAgainAndDeletingNothingIsNoFeast) {
    play(
        R"({"at": 20, "event": "answer", "identifier": "pet.zap-/home/user/Downloads/a 2.txt", "action": "zap"}
{"at": 40, "event": "answer", "identifier": "pet.zap-/home/user/Downloads/a 2.txt", "action": "zap"}
{"at": 60, "event": "end"})");
    const auto feasts = [&] {
        int count = 0;
        for (const auto& caption : all("bubble", "caption")) {
            count += caption.find("Zap!") != std::string::npos ||
                     caption.find("swallowed") != std::string::npos;
        }
        return count;
    };
    EXPECT_THAT(all("trash", "path"), ElementsAre("/home/user/Downloads/a 2.txt"));
    EXPECT_LE(feasts(), 1) << "the second press found nothing to delete";
}

}  // namespace
}  // namespace quibbits
