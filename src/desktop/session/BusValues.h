#pragma once
// Values out of a bus message, as plain types. What other programs send is taken only as far as it
// has the expected shape.

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

struct sd_bus_message;

namespace quibbits::session {

/// None stands for every type that nobody here asks for.
using BusValue =
    std::variant<std::monostate, bool, std::int64_t, double, std::string, std::vector<std::string>>;
using BusDictionary = std::map<std::string, BusValue>;

/// Any string as UTF-8, the only text that a message takes; a broken byte becomes U+FFFD.
std::string busText(const std::string& text);

std::optional<std::string> readText(sd_bus_message* message);
std::optional<std::uint32_t> readNumber(sd_bus_message* message);
/// A list of strings or of object paths.
std::vector<std::string> readTexts(sd_bus_message* message);
/// A dictionary of names and variants, the first 256 entries. One inside it is taken in under its
/// name, a slash and its own names.
BusDictionary readDictionary(sd_bus_message* message);

/// The value of that name where it has that type.
template <typename T>
std::optional<T> valueOf(const BusDictionary& dictionary, const std::string& name) {
    const auto found = dictionary.find(name);
    if (found == dictionary.end()) return std::nullopt;
    const T* value = std::get_if<T>(&found->second);
    return value ? std::optional<T>(*value) : std::nullopt;
}

}  // namespace quibbits::session
