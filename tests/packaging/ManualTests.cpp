// What is written about the programs beside them, manuals, completions, the desktop's entries and
// the licence, against what the programs themselves say.

#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <regex>
#include <set>
#include <sstream>

#include "desktop/TemporaryFolder.h"

namespace quibbits {
namespace {

using testing::HasSubstr;
using Words = std::set<std::string>;

std::string outputOf(const std::string& command) {
    std::string text;
    FILE* pipe = popen(command.c_str(), "r");
    std::array<char, 4096> bytes;
    for (std::size_t n; (n = fread(bytes.data(), 1, bytes.size(), pipe)) > 0;) {
        text.append(bytes.data(), n);
    }
    pclose(pipe);
    return text;
}

std::string program(const std::string& name) {
    return "'" QUIBBITS_BIN_DIR "/" + name + "'";
}

std::string source(const std::string& file) {
    return contents(std::filesystem::path(QUIBBITS_SOURCE_DIR) / file);
}

Words allOf(const std::string& text, const std::string& pattern) {
    const std::regex wanted(pattern);
    Words found;
    for (std::sregex_iterator at(text.begin(), text.end(), wanted), end; at != end; ++at) {
        found.insert((*at)[1]);
    }
    return found;
}

/// The words that quibbits --help lists, also those behind "also".
Words wordsOfHelp() {
    const std::string help = outputOf(program("quibbits") + " --help");
    Words words = allOf(help, "\n  quibbits ([a-z]+)");
    words.erase("quibbits");  // of an address
    for (const auto& list : allOf(help, "also ([a-z, ]+)\n")) {
        words.merge(allOf(list, "([a-z]+)"));
    }
    return words;
}

TEST(Manuals, NameEveryOptionThatHelpListsAndNoOther) {
    const std::string option = "(?:^|[^\\w-])(--?[a-z][a-z-]*)";
    for (const char* name : {"quibbits", "quibbits-defaults", "quibbits-sim", "quibbits-atelier"}) {
        const std::string help = outputOf(program(name) + " --help");
        std::string manual = source(std::string("packaging/man/") + name + ".1");
        manual = std::regex_replace(manual, std::regex("\\\\-"), "-");
        manual = std::regex_replace(manual, std::regex("\\\\f[A-Z]"), " ");
        auto told = allOf(manual, option);
        auto known = allOf(help, option);
        if (known.insert("--help").second) told.insert("--help");
        EXPECT_EQ(told, known) << name;
        EXPECT_GE(known.size(), 3u) << name;
    }
}

TEST(Manuals, NameEveryWordThatHelpLists) {
    const std::string manual = source("packaging/man/quibbits.1");
    const Words words = wordsOfHelp();
    EXPECT_GE(words.size(), 15u);
    for (const auto& word : words) {
        EXPECT_TRUE(std::regex_search(manual, std::regex("\\b" + word + "\\b"))) << word;
    }
}

TEST(Completion, OffersTheWordsThatHelpLists) {
    const auto offered = [](const std::string& function, const std::string& typed) {
        std::istringstream list(outputOf("bash -c '. " QUIBBITS_SOURCE_DIR
                                         "/packaging/completion.bash; COMP_WORDS=(" +
                                         typed + " \"\"); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); " +
                                         function + "; echo ${COMPREPLY[@]}'"));
        return Words(std::istream_iterator<std::string>(list), {});
    };
    Words wanted = wordsOfHelp();
    wanted.insert({"--help", "--version"});
    EXPECT_EQ(offered("_quibbits", "quibbits"), wanted);
    EXPECT_EQ(offered("_quibbits", "quibbits why"), Words{"--json"});
    for (const char* name : {"sim", "atelier"}) {
        const auto help = outputOf(program(std::string("quibbits-") + name) + " --help");
        const auto completion = source("packaging/completion.bash");
        for (const auto& option : allOf(help, "\\s(--[a-z-]+)")) {
            EXPECT_THAT(completion, HasSubstr(option)) << name;
        }
    }
}

TEST(DesktopEntry, StartsAndSpeaksInWordsThatTheProgramKnows) {
    const std::string entry = source("packaging/quibbits.desktop");
    const auto words = wordsOfHelp();
    const auto used = allOf(entry, "\nExec=quibbits ([a-z]+)");
    EXPECT_EQ(used.size(), 3u);
    for (const auto& word : used) EXPECT_TRUE(words.contains(word)) << word;
    const auto actions = allOf(entry, "\n\\[Desktop Action ([a-z]+)\\]");
    for (const auto& action : actions) EXPECT_THAT(entry, HasSubstr(action + ";"));
    EXPECT_EQ(actions.size(), 3u);
}

TEST(TheLicence, IsTheSameWhereverItIsNamed) {
    const std::string licence = source("LICENSE");
    EXPECT_THAT(licence, HasSubstr("MIT License"));
    const auto terms = [](std::string text) {
        text = text.substr(text.find("Permission is hereby granted"));
        text = std::regex_replace(text, std::regex("\n \\.\n"), "\n\n");
        return std::regex_replace(text, std::regex("\\s+"), " ");
    };
    const std::string debian = source("packaging/debian/copyright");
    EXPECT_EQ(terms(debian), terms(licence));
    const auto holder = allOf(licence, "Copyright \\(c\\) ([^\n]+)");
    ASSERT_EQ(holder.size(), 1u);
    EXPECT_THAT(debian, HasSubstr("Copyright: " + *holder.begin()));
    EXPECT_THAT(source("packaging/com.quibbits.Quibbits.metainfo.xml.in"),
                HasSubstr("<project_license>MIT</project_license>"));
    const auto credits =
        allOf(source("src/settings/screens/credits.json"), "\"license\": \"([^\"]+)");
    EXPECT_EQ(credits, Words{"MIT licence"});
}

TEST(TheVersion, IsTheSameInTheRecordOfChanges) {
    const auto version =
        allOf(outputOf(program("quibbits") + " --version"), "quibbits ([0-9.]+)\n");
    ASSERT_EQ(version.size(), 1u);
    EXPECT_THAT(source("packaging/debian/changelog"),
                testing::StartsWith("quibbits (" + *version.begin() + ") "));
}

}  // namespace
}  // namespace quibbits
