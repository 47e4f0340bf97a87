#include "commands/CommandLine.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "app/Address.h"

namespace quibbits::commands {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view helpText =
    R"(Quibbits: small creatures that live on your desktop.

  quibbits                 starts it, or opens the settings of the one that runs
  quibbits settings        opens the settings
  quibbits dial            opens the dial with the party
  quibbits quibbits://WORD says the word to the creatures, and starts them for that

These are for the one that runs, and end with status 3 where none does:

  quibbits celebrate       something went well; also pass, success
  quibbits failed          something went wrong; also fail, error
  quibbits done            a job has ended; also finished
  quibbits hello           greets them
  quibbits focus           they sleep and keep quiet
  quibbits unfocus         they wake up again
  quibbits strike FILE...  the creature strikes the files into the Trash
  quibbits party           who is in the party
  quibbits why             the last decision, its reasons and scores
  quibbits status          whether it runs, and what it does
  quibbits quit            ends it

  --json                   behind party, why and status: the answer as JSON
  --                       behind strike: what follows are files, whatever they are called
  --version                tells the version
  --help                   shows this text

It ends with status 0; with 1 when something could not be done, and says why; with 2 when it was
called wrongly; with 3 when it does not run.
)";

constexpr std::array hooks{"celebrate", "pass",     "success", "failed", "fail",   "error",
                           "done",      "finished", "hello",   "focus",  "unfocus"};
constexpr std::array questions{"party", "why", "status"};
constexpr std::array starts{openLine, dialLine, settingsLine};

template <typename List>
bool isIn(const List& list, std::string_view word) {
    return std::ranges::find(list, word) != list.end();
}

Asked mistake(std::string text) {
    return {.kind = Asked::Kind::mistake, .text = std::move(text)};
}

/// A path that names exactly one file from everywhere: links on the way to it are followed, what it
/// names is not. Or why there is no such file.
struct Named {
    fs::path path = {};
    std::string trouble = {};
};

Named named(const std::string& word, const fs::path& folder) {
    if (word.empty()) return {.trouble = "an empty name is no file"};
    std::string text = word;
    while (text.size() > 1 && text.ends_with('/')) text.pop_back();
    const bool isFolder = text.size() < word.size();
    const fs::path given = folder / text;
    const auto name = given.filename();
    if (name.empty() || name == "." || name == "..") {
        return {.trouble = word + ": name it, rather than where you are"};
    }
    std::error_code error;
    const auto status = fs::symlink_status(given, error);
    if (!fs::exists(status)) return {.trouble = word + ": there is no such file"};
    if (isFolder && !fs::is_directory(status)) return {.trouble = word + ": that is no folder"};
    const auto parent = fs::canonical(given.parent_path(), error);
    if (error) return {.trouble = word + ": " + error.message()};
    return {.path = parent / name};
}

Asked strike(const std::vector<std::string>& words, const fs::path& folder) {
    std::vector<std::string> said{"strike"};
    std::string troubles;
    bool mayBeOption = true;
    for (const auto& word : words) {
        if (mayBeOption && word == "--") {
            mayBeOption = false;
            continue;
        }
        if (mayBeOption && word.starts_with('-')) {
            return mistake("strike knows no " + word + "; write ./" + word + " for a file");
        }
        const auto file = named(word, folder);
        if (file.trouble.empty()) {
            said.push_back(file.path.string());
        } else {
            troubles += (troubles.empty() ? "" : "\n") + file.trouble;
        }
    }
    if (!troubles.empty()) {
        // All or none: who mistypes one name may have meant others, too.
        return {.kind = Asked::Kind::refused, .text = troubles + "\nnothing was struck"};
    }
    if (said.size() == 1) return mistake("strike which files?");
    return {.kind = Asked::Kind::tell, .lines = {lineOf(said)}};
}

Asked question(const std::string& word, const std::vector<std::string>& rest) {
    const bool asJson = rest.size() == 1 && rest.front() == "--json";
    if (!rest.empty() && !asJson) return mistake(word + " knows nothing but --json");
    std::vector<std::string> said{word};
    if (asJson) said.emplace_back("--json");
    const bool tellsAnyway = asJson && word == "status";
    return {.kind = Asked::Kind::tell,
            .lines = {lineOf(said)},
            .text = tellsAnyway ? "{\"running\": false}\n" : ""};
}

bool isPlain(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-' ||
           c == '_' || c == '.' || c == '/';
}

std::optional<std::string> decoded(std::string_view code) {
    std::string text;
    for (std::size_t i = 0; i < code.size(); ++i) {
        if (code[i] != '%') {
            text += code[i];
            continue;
        }
        unsigned char byte = 0;
        const auto digits = code.substr(i + 1, 2);
        const auto* end = digits.data() + digits.size();
        if (digits.size() != 2 || std::from_chars(digits.data(), end, byte, 16).ptr != end) {
            return std::nullopt;
        }
        text += static_cast<char>(byte);
        i += 2;
    }
    return text;
}

}  // namespace

bool isForCreatures(std::string_view word) {
    return isIn(hooks, word);
}

std::string_view help() {
    return helpText;
}

Asked read(const std::vector<std::string>& words, const fs::path& folder) {
    if (words.empty()) return {.kind = Asked::Kind::start, .lines = {std::string(openLine)}};
    const auto isAddress = [](const std::string& word) { return word.starts_with(ownScheme); };
    if (std::ranges::all_of(words, isAddress)) return {.kind = Asked::Kind::start, .lines = words};
    const std::string& word = words.front();
    const std::vector<std::string> rest(words.begin() + 1, words.end());
    if (word == "strike") return strike(rest, folder);
    if (isIn(questions, word)) return question(word, rest);
    if (word == "--help" || word == "-h") {
        return {.kind = Asked::Kind::print, .text = std::string(help())};
    }
    if (word == "--version")
        return {.kind = Asked::Kind::print, .text = "quibbits " QUIBBITS_VERSION "\n"};
    const bool starting = isIn(starts, word);
    if (!starting && word != "quit" && !isIn(hooks, word)) {
        return mistake("there is nothing called '" + word + "'");
    }
    if (!rest.empty()) return mistake(word + " stands alone, without '" + rest.front() + "'");
    return {.kind = starting ? Asked::Kind::start : Asked::Kind::tell, .lines = {word}};
}

std::string lineOf(const std::vector<std::string>& words) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string line;
    for (const auto& word : words) {
        if (!line.empty()) line += ' ';
        for (const char c : word) {
            const auto byte = static_cast<unsigned char>(c);
            if (isPlain(c))
                line += c;
            else
                line += {'%', digits[byte / 16], digits[byte % 16]};
        }
    }
    return line;
}

std::vector<std::string> wordsOf(std::string_view line) {
    std::vector<std::string> words;
    while (!line.empty()) {
        const auto blank = line.find(' ');
        const auto word = decoded(line.substr(0, blank));
        if (!word || word->empty()) return {};
        words.push_back(*word);
        line.remove_prefix(blank == line.npos ? line.size() : blank + 1);
    }
    return words;
}

std::string pack(const Reply& reply) {
    return std::to_string(reply.status) + "\n" + reply.text;
}

Reply unpack(std::string_view text) {
    Reply reply;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), reply.status);
    if (error != std::errc{} || end == text.data() + text.size() || *end != '\n') {
        return {.status = failed, .text = "what runs is of another version; start it anew\n"};
    }
    reply.text = std::string(end + 1, text.data() + text.size());
    return reply;
}

}  // namespace quibbits::commands
