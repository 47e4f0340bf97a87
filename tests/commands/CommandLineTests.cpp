#include <gmock/gmock.h>

#include "commands/CommandLine.h"
#include "desktop/TemporaryFolder.h"

namespace quibbits::commands {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Kind = Asked::Kind;

TEST(ACommandLine, StartsSpeaksPrintsOrIsAMistake) {
    struct Case {
        std::vector<std::string> words;
        Kind kind;
        std::vector<std::string> lines;
    };
    const Case cases[] = {
        {{}, Kind::start, {"open"}},
        {{"settings"}, Kind::start, {"settings"}},
        {{"dial"}, Kind::start, {"dial"}},
        {{"quibbits://a b", "quibbits:"}, Kind::start, {"quibbits://a b", "quibbits:"}},
        {{"celebrate"}, Kind::tell, {"celebrate"}},
        {{"unfocus"}, Kind::tell, {"unfocus"}},
        {{"quit"}, Kind::tell, {"quit"}},
        {{"why"}, Kind::tell, {"why"}},
        {{"why", "--json"}, Kind::tell, {"why --json"}},
        {{"--version"}, Kind::print, {}},
        {{"--help"}, Kind::print, {}},
        {{""}, Kind::mistake, {}},
        {{"Celebrate"}, Kind::mistake, {}},
        {{"celebrate", "now"}, Kind::mistake, {}},
        {{"celebrate", "quibbits://done"}, Kind::mistake, {}},
        {{"quibbits://done", "celebrate"}, Kind::mistake, {}},
        {{"quit", "--json"}, Kind::mistake, {}},
        {{"why", "--jsonn"}, Kind::mistake, {}},
        {{"why", "--json", "--json"}, Kind::mistake, {}},
        {{"strike"}, Kind::mistake, {}},
        {{"strike", "--"}, Kind::mistake, {}},
        {{"strike", "-f"}, Kind::mistake, {}},
        {{"open"}, Kind::start, {"open"}},
    };
    for (const auto& [words, kind, lines] : cases) {
        SCOPED_TRACE(testing::PrintToString(words));
        const auto asked = read(words, "/");
        EXPECT_EQ(asked.kind, kind);
        EXPECT_EQ(asked.lines, lines);
        EXPECT_EQ(asked.text.empty(), kind == Kind::start || kind == Kind::tell);
    }
}

TEST(ACommandLine, NamesEachFileToStrikeByAPathThatHoldsEverywhere) {
    const TemporaryFolder folder;
    const auto home = std::filesystem::canonical(folder.path());
    const std::string odd = "new\nline \xff%41*";
    for (const std::string& name : {odd, std::string("--json"), std::string("under/way")}) {
        write(home / name, "");
    }
    std::filesystem::create_directory_symlink("under", home / "link");
    std::filesystem::create_symlink("nowhere", home / "dangling");
    const auto paths = [&](std::vector<std::string> words) {
        words.insert(words.begin(), "strike");
        const auto asked = read(words, home);
        EXPECT_EQ(asked.kind, Kind::tell) << asked.text;
        auto said = asked.lines.empty() ? words : wordsOf(asked.lines.front());
        EXPECT_EQ(said.front(), "strike");
        for (std::string& path : said) {
            if (path.starts_with(home.string())) path.erase(0, home.string().size() + 1);
        }
        return std::vector<std::string>(said.begin() + 1, said.end());
    };
    EXPECT_THAT(paths({odd}), ElementsAre(odd));
    EXPECT_THAT(paths({"--", "--json"}), ElementsAre("--json"));
    EXPECT_THAT(paths({"./--json", "under/"}), ElementsAre("--json", "under"));
    EXPECT_THAT(paths({(home / "under/way").string()}), ElementsAre("under/way"));
    // A link on the way is followed, as for every other program; one that is named goes itself.
    EXPECT_THAT(paths({"link/way", "link/../under/way"}), ElementsAre("under/way", "under/way"));
    EXPECT_THAT(paths({"link", "dangling"}), ElementsAre("link", "dangling"));
}

TEST(ACommandLine, StrikesNothingWhenOneOfTheNamesIsNone) {
    const TemporaryFolder folder;
    write(folder / "there", "");
    std::filesystem::create_directory_symlink(".", folder / "link");
    for (const std::string name : {"", ".", "..", "/", "./", "missing", "there/", "there/x",
                                   "link/", "link/..", "missing/../there"}) {
        const auto asked = read({"strike", "there", name}, folder.path());
        EXPECT_EQ(asked.kind, Kind::refused) << name;
        EXPECT_THAT(asked.lines, IsEmpty()) << name;
        EXPECT_THAT(asked.text, HasSubstr("nothing was struck")) << name;
    }
}

TEST(ALine, CarriesWordsOfAnyBytes) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    const std::vector<std::string> words{"strike", all, "/a b", "%41", "grüße"};
    const auto line = lineOf(words);
    EXPECT_EQ(wordsOf(line), words);
    EXPECT_TRUE(std::ranges::all_of(line, [](char c) { return c >= ' ' && c < 0x7f; }));
    for (const char* broken :
         {"", " ", "strike ", "strike  /a", "strike %4", "strike %zz", "a %"}) {
        const auto read = wordsOf(broken);
        EXPECT_TRUE(read.empty() || read == std::vector<std::string>{"strike"}) << broken;
    }
}

TEST(AReply, ComesBackAsItWasOrIsAFailureInWords) {
    for (const Reply& reply :
         {Reply{}, Reply{.status = 1, .text = "no\n"}, Reply{.text = "1\n2"}}) {
        EXPECT_EQ(unpack(pack(reply)), reply);
    }
    for (const char* broken : {"", "0", "x\n", "99999999999\n"}) {
        EXPECT_EQ(unpack(broken).status, failed) << broken;
        EXPECT_FALSE(unpack(broken).text.empty()) << broken;
    }
}

}  // namespace
}  // namespace quibbits::commands
