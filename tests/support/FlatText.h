#pragma once
// Measures text without any font: every character is as wide as half the font's size.

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>

#include "platform/Text.h"

namespace quibbits {

class FlatText final : public TextMeasure {
public:
    Size measure(const StyledText& text, Size limit) const override {
        std::size_t count = 0;
        for (const TextRun& run : text.runs) count += characterCount(run.text);
        const double width = static_cast<double>(count) * text.fontSize / 2;
        const double lines = std::max(1.0, std::ceil(width / limit.width));
        return {std::min(width, limit.width), std::min(lines * text.fontSize * 1.25, limit.height)};
    }
    std::string worded(const std::string& text) const override {
        return wording ? wording(text) : text;
    }
    std::function<std::string(const std::string&)> wording;
};

}  // namespace quibbits
