#pragma once
// What the words behind "quibbits" ask for, before any companion is there: to start, to be printed,
// or to be said to the companion that runs, as one line of text. Paths become absolute here,
// because the companion stands in another folder.

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace quibbits::commands {

// How the program ends, for scripts.
inline constexpr int done = 0;
inline constexpr int failed = 1;      // it could not be done; the reason is said
inline constexpr int misused = 2;     // the command line makes no sense
inline constexpr int notRunning = 3;  // nobody is there who could do it

// The lines that a start without a companion fulfils by itself. Beside them there are addresses.
inline constexpr std::string_view openLine = "open";
inline constexpr std::string_view dialLine = "dial";
inline constexpr std::string_view settingsLine = "settings";

struct Asked {
    enum class Kind {
        start,    // the lines, to the one that runs or to this one
        tell,     // one line, and only to one that runs
        print,    // the text, and no more
        refused,  // the text says why it cannot be
        mistake,  // the text says which
    };
    Kind kind = Kind::mistake;
    std::vector<std::string> lines = {};
    std::string text = {};  // behind a line to tell: what to print where nobody runs
};

/// Reads the words of a command line that was given in a folder. Looks at the files that are named,
/// and changes nothing.
Asked read(const std::vector<std::string>& words, const std::filesystem::path& folder);

/// Whether the creatures themselves hear the word.
bool isForCreatures(std::string_view word);

/// What --help shows.
std::string_view help();

/// Words of any bytes as one line of printable ones, and back. Neither word nor line is empty.
std::string lineOf(const std::vector<std::string>& words);
std::vector<std::string> wordsOf(std::string_view line);

/// What the companion answers, and what the program that asked ends with.
struct Reply {
    int status = done;
    std::string text = {};
    bool operator==(const Reply&) const = default;
};
std::string pack(const Reply& reply);
/// Nothing useful in it is a failure in words.
Reply unpack(std::string_view text);

}  // namespace quibbits::commands
