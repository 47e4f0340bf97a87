#pragma once
// Lines of text that must fit the frames they were designed for, whatever the user's font is.

#include <optional>
#include <string>

#include "layers/Content.h"
#include "platform/Geometry.h"
#include "platform/Text.h"

namespace quibbits {

/// A line of text and where it goes.
struct Label {
    std::string text;
    double fontSize = 12;
    FontWeight weight = FontWeight::medium;
    Color color = Color::white();
    TextAlignment alignment = TextAlignment::left;
    Rect frame;
    /// How wide the letters may be, where something stands at the frame's sides.
    std::optional<double> room = std::nullopt;

    /// How a line that is far too long goes on two: in a frame of its own, with a line break in
    /// place of this text.
    struct Fold {
        std::string at;
        std::string with;  // the line break and what stays beside it
        Rect frame;
    };
    std::optional<Fold> fold = std::nullopt;
};

struct FittedText {
    Text text;
    Rect frame;
};

/// The label as it is when there is room. Else in letters up to an eighth smaller, else folded,
/// else as small as it takes.
FittedText fitted(const Label& label, const TextMeasure& ruler);

}  // namespace quibbits
