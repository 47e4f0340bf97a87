#include "desktop/session/BusValues.h"

#include <systemd/sd-bus.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace quibbits::session {
namespace {

constexpr std::size_t mostEntries = 256;

/// How many bytes the character at `at` takes; 0 when it is broken.
std::size_t lengthOfCharacter(const std::string& text, std::size_t at) {
    const auto byte = [&](std::size_t i) {
        return at + i < text.size() ? static_cast<unsigned char>(text[at + i]) : 0U;
    };
    const unsigned first = byte(0);
    if (first == 0) return 0;
    if (first < 0x80) return 1;
    const std::size_t length = first >= 0xf5   ? 0
                               : first >= 0xf0 ? 4
                               : first >= 0xe0 ? 3
                               : first >= 0xc2 ? 2
                                               : 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xc0) != 0x80) return 0;
    }
    const bool isLong = (first == 0xe0 && byte(1) < 0xa0) || (first == 0xf0 && byte(1) < 0x90);
    const bool isNone = (first == 0xed && byte(1) >= 0xa0) || (first == 0xf4 && byte(1) >= 0x90);
    return isLong || isNone ? 0 : length;
}

template <typename Raw, typename Value>
BusValue readAs(sd_bus_message* message, char type) {
    Raw raw{};
    if (sd_bus_message_read_basic(message, type, &raw) <= 0) return {};
    return static_cast<Value>(raw);
}

BusValue readValue(sd_bus_message* message, const std::string& signature) {
    if (signature == "as" || signature == "ao") return readTexts(message);
    if (signature.size() == 1) {
        const char type = signature.front();
        switch (type) {
            case 'b': {
                int raw = 0;
                if (sd_bus_message_read_basic(message, type, &raw) <= 0) return {};
                return raw != 0;
            }
            case 'y': return readAs<std::uint8_t, std::int64_t>(message, type);
            case 'n': return readAs<std::int16_t, std::int64_t>(message, type);
            case 'q': return readAs<std::uint16_t, std::int64_t>(message, type);
            case 'i': return readAs<std::int32_t, std::int64_t>(message, type);
            case 'u': return readAs<std::uint32_t, std::int64_t>(message, type);
            case 'x': return readAs<std::int64_t, std::int64_t>(message, type);
            case 't': return readAs<std::uint64_t, std::int64_t>(message, type);
            case 'd': return readAs<double, double>(message, type);
            case 's':
            case 'o': {
                const char* text = nullptr;
                if (sd_bus_message_read_basic(message, type, &text) <= 0) return {};
                return std::string(text);
            }
            default: break;
        }
    }
    sd_bus_message_skip(message, signature.c_str());
    return {};
}

BusValue readVariant(sd_bus_message* message) {
    char type = 0;
    const char* contents = nullptr;
    if (sd_bus_message_peek_type(message, &type, &contents) <= 0 || type != 'v') return {};
    const std::string signature = contents;
    if (sd_bus_message_enter_container(message, 'v', signature.c_str()) <= 0) return {};
    BusValue value = readValue(message, signature);
    sd_bus_message_exit_container(message);
    return value;
}

/// A variant that holds a dictionary; nothing is read of any other.
std::optional<BusDictionary> readInnerDictionary(sd_bus_message* message) {
    char type = 0;
    const char* contents = nullptr;
    if (sd_bus_message_peek_type(message, &type, &contents) <= 0 || type != 'v' ||
        std::string_view(contents) != "a{sv}" ||
        sd_bus_message_enter_container(message, 'v', "a{sv}") <= 0) {
        return std::nullopt;
    }
    auto inner = readDictionary(message);
    sd_bus_message_exit_container(message);
    return inner;
}

}  // namespace

std::string busText(const std::string& text) {
    std::string valid;
    valid.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const auto length = lengthOfCharacter(text, at);
        if (length == 0) {
            valid += "\xef\xbf\xbd";
        } else {
            valid.append(text, at, length);
        }
        at += std::max<std::size_t>(length, 1);
    }
    return valid;
}

std::optional<std::string> readText(sd_bus_message* message) {
    const char* text = nullptr;
    if (sd_bus_message_read_basic(message, 's', &text) <= 0) return std::nullopt;
    return text;
}

std::optional<std::uint32_t> readNumber(sd_bus_message* message) {
    std::uint32_t number = 0;
    if (sd_bus_message_read_basic(message, 'u', &number) <= 0) return std::nullopt;
    return number;
}

std::vector<std::string> readTexts(sd_bus_message* message) {
    char type = 0;
    const char* contents = nullptr;
    if (sd_bus_message_peek_type(message, &type, &contents) <= 0 || type != 'a') return {};
    const std::string kind = contents;
    if (kind != "s" && kind != "o") return {};
    if (sd_bus_message_enter_container(message, 'a', kind.c_str()) <= 0) return {};
    std::vector<std::string> texts;
    const char* text = nullptr;
    while (sd_bus_message_read_basic(message, kind.front(), &text) > 0) {
        if (texts.size() < mostEntries) texts.emplace_back(text);
    }
    sd_bus_message_exit_container(message);
    return texts;
}

BusDictionary readDictionary(sd_bus_message* message) {
    BusDictionary dictionary;
    if (sd_bus_message_enter_container(message, 'a', "{sv}") <= 0) return dictionary;
    while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
        const auto name = readText(message);
        const auto inner = readInnerDictionary(message);
        BusValue value = inner ? BusValue{} : readVariant(message);
        if (name && dictionary.size() < mostEntries) dictionary[*name] = std::move(value);
        for (const auto& [key, each] : inner.value_or(BusDictionary{})) {
            if (name && dictionary.size() < mostEntries) dictionary[*name + "/" + key] = each;
        }
        if (sd_bus_message_exit_container(message) < 0) break;
    }
    sd_bus_message_exit_container(message);
    return dictionary;
}

}  // namespace quibbits::session
