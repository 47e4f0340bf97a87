#pragma once
// Measuring text. A text is a list of runs, so that a speaker's name can have a colour of its own.

#include <string>
#include <string_view>
#include <vector>

#include "platform/Color.h"
#include "platform/Geometry.h"

namespace quibbits {

enum class FontWeight { regular, medium, semibold, bold };

struct TextRun {
    std::string text;  // UTF-8
    Color color;
    bool operator==(const TextRun&) const = default;
};

/// Text in the system's font, broken into lines at the width that is given to it.
struct StyledText {
    std::vector<TextRun> runs;
    double fontSize = 12;  // points
    FontWeight weight = FontWeight::regular;
    bool operator==(const StyledText&) const = default;
};

/// How many characters the user sees: a letter with its accents, or an emoji, counts once.
std::size_t characterCount(const std::string& utf8);
/// The first count characters in the sense of characterCount.
std::string firstCharacters(const std::string& utf8, std::size_t count);

/// With the letters A to Z in lower case; all others as they are.
std::string asciiLowercase(std::string_view text);

/// What everybody who sets a text on the screen asks first.
class TextMeasure {
public:
    virtual ~TextMeasure() = default;
    /// The size of the text set in lines no wider than the limit, itself no larger than the limit.
    virtual Size measure(const StyledText& text, Size limit) const = 0;
    /// A whole text that is about to be set, in this desktop's own words.
    virtual std::string worded(const std::string& text) const { return text; }
};

}  // namespace quibbits
