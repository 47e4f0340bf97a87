#include "platform/Text.h"

#include <cstdint>

namespace quibbits {

namespace {

struct Decoded {
    char32_t code = 0;
    std::size_t length = 1;
};

/// One code point; a broken sequence counts as one character of one byte.
Decoded decode(const std::string& text, std::size_t at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(at);
    const std::size_t length = lead < 0x80 ? 1 : lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
    const bool leads = (lead & 0xc0) != 0x80 && lead < 0xf8;
    if (lead < 0x80 || !leads || at + length > text.size()) return {lead, 1};
    char32_t code = lead & (0xffu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(at + i) & 0xc0) != 0x80) return {lead, 1};
        code = (code << 6) | (byte(at + i) & 0x3f);
    }
    return {code, length};
}

constexpr char32_t zeroWidthJoiner = 0x200d;

bool extendsCharacter(char32_t c) {
    return (c >= 0x0300 && c <= 0x036f)       // combining accents
           || (c >= 0x20d0 && c <= 0x20ff)    // combining marks for symbols
           || (c >= 0xfe00 && c <= 0xfe0f)    // variation selectors
           || (c >= 0x1f3fb && c <= 0x1f3ff)  // skin tones
           || (c >= 0xe0020 && c <= 0xe007f)  // the tags of a region's flag
           || c == zeroWidthJoiner;
}

/// Half of a country's flag.
bool isRegionalIndicator(char32_t c) {
    return c >= 0x1f1e6 && c <= 0x1f1ff;
}

/// The byte after the character that begins at a byte.
std::size_t endOfCharacter(const std::string& text, std::size_t at) {
    auto current = decode(text, at);
    std::size_t end = at + current.length;
    if (isRegionalIndicator(current.code) && end < text.size()) {
        const auto other = decode(text, end);
        if (isRegionalIndicator(other.code)) end += other.length;
    }
    while (end < text.size()) {
        const auto next = decode(text, end);
        if (!extendsCharacter(next.code) && current.code != zeroWidthJoiner) break;
        current = next;
        end += next.length;
    }
    return end;
}

}  // namespace

std::size_t characterCount(const std::string& utf8) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < utf8.size(); at = endOfCharacter(utf8, at)) ++count;
    return count;
}

std::string firstCharacters(const std::string& utf8, std::size_t count) {
    std::size_t at = 0;
    for (; count > 0 && at < utf8.size(); --count) at = endOfCharacter(utf8, at);
    return utf8.substr(0, at);
}

std::string asciiLowercase(std::string_view text) {
    std::string small(text);
    for (char& c : small) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return small;
}

}  // namespace quibbits
