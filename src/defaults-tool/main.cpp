// quibbits-defaults: reads, writes and deletes keys of the user's defaults, while the companion
// runs or not.

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <iostream>
#include <span>

#include "desktop/files/DefaultsFile.h"

namespace quibbits {
namespace {

constexpr int done = 0;
constexpr int failed = 1;   // no such key, or the file cannot be written
constexpr int misused = 2;  // the command line makes no sense

constexpr const char* help = R"(quibbits-defaults reads and writes what Quibbits remembers.

  quibbits-defaults list                     every key with its type
  quibbits-defaults read                     every key with its value
  quibbits-defaults read KEY
  quibbits-defaults write KEY VALUE          true and false, numbers and texts keep their type
  quibbits-defaults write KEY -bool true|false
  quibbits-defaults write KEY -int NUMBER
  quibbits-defaults write KEY -float NUMBER
  quibbits-defaults write KEY -string TEXT
  quibbits-defaults write KEY -date 2024-05-01T12:00:00Z   or seconds since 1970
  quibbits-defaults write KEY -array TEXT...
  quibbits-defaults delete KEY

It ends with status 0, with 1 when there is no such key or the file cannot be written, and with 2
when it was called wrongly.
)";

using Words = std::span<const std::string>;

template <typename Number>
std::optional<Number> whole(const std::string& text) {
    Number value{};
    const auto* first = text.data() + (text.starts_with('+') ? 1 : 0);
    const auto [end, error] = std::from_chars(first, text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    if constexpr (std::is_floating_point_v<Number>) {
        if (!std::isfinite(value)) return std::nullopt;
    }
    return value;
}

std::optional<bool> truth(const std::string& text) {
    if (text == "true" || text == "yes" || text == "YES" || text == "1") return true;
    if (text == "false" || text == "no" || text == "NO" || text == "0") return false;
    return std::nullopt;
}

std::optional<Date> date(const std::string& text) {
    if (const auto seconds = whole<double>(text)) return Date{*seconds};
    tm parts{};
    const char* rest = strptime(text.c_str(), "%Y-%m-%dT%H:%M:%S", &parts);
    if (!rest) rest = strptime(text.c_str(), "%Y-%m-%d %H:%M:%S", &parts);
    if (!rest) return std::nullopt;
    if (std::string_view(rest) == "Z") return Date{static_cast<double>(timegm(&parts))};
    if (*rest) {
        char sign = 0;
        int hours = 0;
        int minutes = 0;
        char end = 0;
        if (std::sscanf(rest, " %c%2d%*[:]%2d%c", &sign, &hours, &minutes, &end) != 3 &&
            std::sscanf(rest, " %c%2d%2d%c", &sign, &hours, &minutes, &end) != 3) {
            return std::nullopt;
        }
        if (sign != '+' && sign != '-') return std::nullopt;
        const int offset = (hours * 60 + minutes) * 60;
        return Date{static_cast<double>(timegm(&parts) - (sign == '-' ? -offset : offset))};
    }
    parts.tm_isdst = -1;
    return Date{static_cast<double>(mktime(&parts))};
}

DefaultsValue guessed(const std::string& text) {
    if (text == "true" || text == "false") return text == "true";
    if (const auto number = whole<std::int64_t>(text)) return *number;
    if (const auto number = whole<double>(text)) return *number;
    return text;
}

/// The value that the words after the key spell.
std::optional<DefaultsValue> valueFrom(Words words) {
    const auto as = [](const auto& value) {
        return value ? std::optional<DefaultsValue>(*value) : std::nullopt;
    };
    if (words.empty()) return std::nullopt;
    const auto& type = words[0];
    if (type == "-array") return std::vector<std::string>(words.begin() + 1, words.end());
    constexpr std::array types{"-string", "-int", "-float", "-bool", "-date"};
    if (words.size() == 1 && std::ranges::find(types, type) != types.end()) return std::nullopt;
    if (words.size() == 1) return guessed(type);
    if (words.size() != 2) return std::nullopt;
    const auto& text = words[1];
    if (type == "-string") return text;
    if (type == "-int") return as(whole<std::int64_t>(text));
    if (type == "-float") return as(whole<double>(text));
    if (type == "-bool") return as(truth(text));
    if (type == "-date") return as(date(text));
    return std::nullopt;
}

std::string shown(const DefaultsValue& value) {
    if (const auto* moment = std::get_if<Date>(&value)) {
        const auto time = static_cast<time_t>(std::floor(moment->secondsSince1970));
        tm parts{};
        char text[64];
        if (!gmtime_r(&time, &parts)) return std::to_string(moment->secondsSince1970);
        std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
        return text;
    }
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    const auto json = jsonFromDefaults(value);
    return json ? json->dump() : "";
}

const char* typeName(const DefaultsValue& value) {
    constexpr const char* names[] = {"bool", "int", "float", "string", "date", "array"};
    static_assert(std::size(names) == std::variant_size_v<DefaultsValue>);
    return names[value.index()];
}

int wrong(const std::string& what) {
    std::cerr << "quibbits-defaults: " << what << "; --help tells more\n";
    return misused;
}

int saved(DefaultsFile& defaults) {
    if (defaults.flush()) return done;
    std::cerr << "quibbits-defaults: " << defaults.failure() << '\n';
    return failed;
}

int missing(const std::string& key) {
    std::cerr << "quibbits-defaults: there is no key " << key << '\n';
    return failed;
}

int read(const DefaultsFile& defaults, Words words) {
    if (words.size() > 1) return wrong("read takes one key, or none");
    if (words.empty()) {
        for (const auto& [key, value] : defaults.all()) {
            std::cout << key << " = " << shown(value) << '\n';
        }
        return done;
    }
    const auto value = defaults.stored(words[0]);
    if (!value) return missing(words[0]);
    std::cout << shown(*value) << '\n';
    return done;
}

int list(const DefaultsFile& defaults, Words words) {
    if (!words.empty()) return wrong("list takes nothing");
    for (const auto& [key, value] : defaults.all()) {
        std::cout << key << '\t' << typeName(value) << '\n';
    }
    return done;
}

int write(DefaultsFile& defaults, Words words) {
    if (words.size() < 2) return wrong("write takes a key and a value");
    auto value = valueFrom(words.subspan(1));
    if (!value) return wrong("that is no value for " + words[0]);
    defaults.set(words[0], std::move(*value));
    return saved(defaults);
}

int remove(DefaultsFile& defaults, Words words) {
    if (words.size() != 1) return wrong("delete takes one key");
    if (!defaults.stored(words[0])) return missing(words[0]);
    defaults.remove(words[0]);
    return saved(defaults);
}

int run(Words words) {
    if (words.empty()) return wrong("no command");
    const auto& command = words[0];
    if (command == "--help" || command == "-h" || command == "help") {
        std::cout << help;
        return done;
    }
    DefaultsFile defaults(DefaultsFile::usualPlace());
    const auto rest = words.subspan(1);
    if (command == "read") return read(defaults, rest);
    if (command == "list") return list(defaults, rest);
    if (command == "write") return write(defaults, rest);
    if (command == "delete") return remove(defaults, rest);
    return wrong("there is no command " + command);
}

}  // namespace
}  // namespace quibbits

int main(int count, char** arguments) {
    const std::vector<std::string> words(arguments + 1, arguments + std::max(count, 1));
    return quibbits::run(words);
}
