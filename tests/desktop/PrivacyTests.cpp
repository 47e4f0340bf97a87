// What docs/privacy.md promises, against a trace of every file and every socket that the program
// and its settings touch.

#include <gmock/gmock.h>

#include <cstdlib>
#include <regex>
#include <set>
#include <sstream>

#include "RunningProgram.h"
#include "TemporaryFolder.h"
#include "XTest.h"

namespace quibbits {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

struct PrivacyTest : XTest {
    void SetUp() override {
        XTest::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        if (std::system("strace -o /dev/null true 2>/dev/null") != 0) {
            if (std::getenv("CI")) FAIL() << "strace is not installed or may not trace";
            GTEST_SKIP() << "strace is not installed or may not trace";
        }
        desktop->startWindowManager();
        desktop->startCompositor();
    }
    /// A life with the settings open, from the start to the end, and what it asked the system for.
    std::vector<std::string> lines() {
        write(folder / "home/Documents/diary.txt", "secret");
        write(folder / "home/Downloads/alone.pdf", std::string(50'000, 'x'));
        write(folder / "home/Downloads/twin.pdf", std::string(50'000, 'y'));
        write(folder / "home/Downloads/twin (1).pdf", std::string(50'000, 'y'));
        write(folder / "config/quibbits/defaults.json",
              R"({"onboarded": true, "pet.stage": "sparrel"})");
        const auto log = folder / "log";
        {
            const RunningProgram program(
                desktop->display(), folder.path(),
                {"strace", "-f", "-s", "4096", "-o", log.native(), "-e", "trace=%file,%network"});
            say("status");  // once it lives: the next word would start one of its own
            say("settings");
            EXPECT_TRUE(eventually([&] {
                turnFor(0.5);
                return contents(log).find(twin) != std::string::npos;
            })) << "or the trace sees nothing";
            say("quit");
            turnFor(1);
        }
        std::istringstream text(contents(log));
        std::vector<std::string> all;
        for (std::string line; std::getline(text, line);) all.push_back(line);
        return all;
    }
    void say(const std::string& word) {
        const std::string command = "DISPLAY=" + desktop->display() + " XDG_RUNTIME_DIR='" +
                                    (folder / "run").native() +
                                    "' '" QUIBBITS_BIN_DIR "/quibbits' " + word + " 2>/dev/null";
        EXPECT_TRUE(eventually([&] { return std::system(command.c_str()) == 0; })) << word;
    }
    TemporaryFolder folder;
    const std::string twin = (folder / "home/Downloads/twin (1).pdf\", O_RDONLY").native();
};

TEST_F(PrivacyTest, OnlyLocalSocketsAreOpenedAndOnlyOwnFilesWritten) {
    const std::string home = (folder / "home").native();
    const std::string own = folder.path().native();
    const std::regex socket("socket(?:pair)?\\((\\w+),");
    const std::regex writing("openat?\\(.*\"([^\"]*)\", [^)]*O_(?:WRONLY|RDWR|CREAT)");
    const std::regex changing(" (?:unlink|mkdir|rename|link|symlink)\\w*\\(.*\"([^\"]*)\"");
    std::set<std::string> families;
    std::set<std::string> written;
    std::set<std::string> opened;
    const auto all = lines();
    ASSERT_GT(all.size(), 500u) << "no trace of a life";
    for (const auto& line : all) {
        std::smatch found;
        if (std::regex_search(line, found, socket)) families.insert(found[1]);
        EXPECT_THAT(line, Not(HasSubstr("sa_family=AF_INET"))) << "a network connection";
        const bool failed = line.find(") = -1 ") != std::string::npos;
        for (const auto* act : {&writing, &changing}) {
            if (!failed && std::regex_search(line, found, *act)) written.insert(found[1]);
        }
        if (line.find("open") != std::string::npos && line.find(home) != std::string::npos) {
            const auto at = line.find(home);
            opened.insert(line.substr(at, line.find('"', at) - at));
        }
    }
    for (const auto& family : families) {
        EXPECT_TRUE(family == "AF_UNIX" || family == "AF_NETLINK") << family;
    }
    EXPECT_TRUE(families.contains("AF_UNIX"));
    for (const auto& file : written) {
        const bool isOwn = file.starts_with(own + "/config/quibbits") || file == own + "/config" ||
                           file.starts_with(own + "/run/quibbits") || file.starts_with("/dev/") ||
                           file.starts_with("/memfd");
        EXPECT_TRUE(isOwn) << file << " was written";
    }
    EXPECT_FALSE(opened.contains(home + "/Documents/diary.txt"));
    EXPECT_FALSE(opened.contains(home + "/Downloads/alone.pdf"))
        << "only what looks like a copy is read";
    const auto kept = contents(folder / "config/quibbits/defaults.json");
    EXPECT_THAT(kept, HasSubstr("pet.stage"));
    EXPECT_THAT(kept, Not(HasSubstr("alone.pdf"))) << "what it has seen is not kept";
}

}  // namespace
}  // namespace quibbits
