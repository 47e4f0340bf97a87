#include "dial/FittedText.h"

#include <algorithm>

namespace quibbits {

namespace {

constexpr double smallest = 7.0 / 8;  // of the size asked for, before a line is folded
constexpr Size anySize{10000, 10000};

StyledText styled(const Label& label, const std::string& text) {
    return {.runs = {{text, label.color}}, .fontSize = label.fontSize, .weight = label.weight};
}

/// How much smaller the text must be to fit the size.
double shareThatFits(const StyledText& text, const TextMeasure& ruler, Size room) {
    const Size needed = ruler.measure(text, anySize);
    return std::min({1.0, room.width / std::max(needed.width, 1.0),
                     room.height / std::max(needed.height, 1.0)});
}

}  // namespace

FittedText fitted(const Label& original, const TextMeasure& ruler) {
    Label label = original;
    label.text = ruler.worded(label.text);
    FittedText result{.text = {.text = styled(label, label.text), .alignment = label.alignment},
                      .frame = label.frame};
    StyledText& text = result.text.text;
    const double room = label.room.value_or(label.frame.width);
    double share = shareThatFits(text, ruler, {room, anySize.height});
    const auto fold = label.fold ? label.text.find(label.fold->at) : std::string::npos;
    if (share < smallest && fold != std::string::npos) {
        std::string two = label.text;
        two.replace(fold, label.fold->at.size(), label.fold->with);
        text = styled(label, two);
        result.frame = label.fold->frame;
        share = shareThatFits(text, ruler, result.frame.size());
    }
    text.fontSize *= share;
    return result;
}

}  // namespace quibbits
