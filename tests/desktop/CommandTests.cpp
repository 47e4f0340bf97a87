// The words of a command line, said to the program as it runs on a virtual desktop.

#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cstdio>

#include "RunningProgram.h"
#include "TemporaryFolder.h"
#include "XTest.h"
#include "codecs/Json.h"

namespace quibbits {
namespace {

struct CommandTest : XTest {
    struct Result {
        int status = -1;
        std::string text;
    };
    void SetUp() override {
        XTest::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        desktop->startWindowManager();
        desktop->startCompositor();
    }
    void start(const std::string& defaults) {
        write(folder / "config/quibbits/defaults.json", defaults);
        program = std::make_unique<RunningProgram>(desktop->display(), folder.path());
        ASSERT_TRUE(eventually([&] { return say("status").status == 0; }));
    }
    /// Runs the shell's words as a command of this user in the folder of their files.
    Result say(const std::string& words, const std::string& display = "set") {
        std::filesystem::create_directories(folder / "files");
        std::filesystem::create_directories(folder / "run");
        std::filesystem::permissions(folder / "run", std::filesystem::perms::owner_all);
        const std::string command =
            "cd '" + (folder / "files").native() + "' && XDG_RUNTIME_DIR='" +
            (folder / "run").native() + "' " +
            (display == "set" ? "DISPLAY=" + desktop->display() : "env -u DISPLAY") +
            " '" QUIBBITS_BIN_DIR "/quibbits' 2>&1 " + words;
        Result result;
        FILE* pipe = popen(command.c_str(), "r");
        std::array<char, 4096> bytes;
        for (std::size_t n; (n = fread(bytes.data(), 1, bytes.size(), pipe)) > 0;) {
            result.text.append(bytes.data(), n);
        }
        result.status = WEXITSTATUS(pclose(pipe));
        return result;
    }
    std::optional<Json> asked(const std::string& words) {
        return Json::parse(say(words + " --json").text).value;
    }
    std::filesystem::path trashed(const std::string& name) {
        return folder / "data/Trash/files" / name;
    }

    TemporaryFolder folder;
    std::unique_ptr<RunningProgram> program;
};

constexpr const char* sparrelOut =
    R"({"onboarded": true, "pet.stage": "sparrel", "pet.level": 5, "pet.energy": 1})";

TEST_F(CommandTest, WithoutARunningOneOnlyHelpAndVersionAreAnswered) {
    for (const char* words : {"celebrate", "status", "why --json", "party", "quit"}) {
        EXPECT_EQ(say(words).status, 3) << words;
    }
    EXPECT_EQ(say("status --json 2>/dev/null").text, "{\"running\": false}\n");
    EXPECT_EQ(say("--version").status, 0);
    EXPECT_EQ(say("--help").status, 0);
    EXPECT_EQ(say("no-such-word").status, 2);
    write(folder / "files/kept", "");
    EXPECT_EQ(say("strike kept").status, 3);
    EXPECT_TRUE(std::filesystem::exists(folder / "files/kept"));
}

TEST_F(CommandTest, TheRunningOneAnswersScripts) {
    start(sparrelOut);
    EXPECT_EQ(say("hello").status, 0);
    const auto status = asked("status");
    ASSERT_TRUE(status && status->find("display"));
    EXPECT_EQ(*status->find("display"), Json(desktop->display()));
    EXPECT_EQ(say("status", "unset").status, 0) << "as from a timer, which has no display";
    ASSERT_TRUE(eventually([&] { return say("why").status == 0; })) << say("why").text;
    EXPECT_TRUE(asked("why")->find("options"));
    EXPECT_EQ(asked("party")->as<Json::Array>()->size(), 2u);

    EXPECT_EQ(say("focus").status, 0);
    EXPECT_EQ(*asked("status")->find("focus"), Json(true));
    EXPECT_EQ(say("celebrate").status, 1);
    EXPECT_EQ(say("quit").status, 0);
    std::optional<int> end;
    ASSERT_TRUE(eventually([&] { return (end = program->ending()).has_value(); }));
    EXPECT_EQ(*end, 0);
    EXPECT_EQ(say("status").status, 3);
}

TEST_F(CommandTest, ACreatureStrikesTheNamedFilesIntoTheTrashAndNoOthers) {
    start(sparrelOut);
    const std::string odd = "new\nline \xff%41";
    for (const std::string& name : {odd, std::string("-x"), std::string("kept")}) {
        write(folder / "files" / name, name);
    }
    EXPECT_EQ(say("strike kept missing").status, 1);
    Result result;
    ASSERT_TRUE(eventually([&] {
        result = say("strike -- \"$(printf 'new\\nline \\377%%41')\" -x");
        return result.status == 0;
    })) << result.text;
    EXPECT_TRUE(eventually([&] {
        return std::filesystem::exists(trashed(odd)) && std::filesystem::exists(trashed("-x"));
    }));
    EXPECT_EQ(contents(trashed(odd)), odd);
    EXPECT_EQ(contents(folder / "files/kept"), "kept");
    EXPECT_FALSE(std::filesystem::exists(trashed("kept")));
}

}  // namespace
}  // namespace quibbits
