// The eleven moods a portrait can show, and the typed eyes, brows and mouths that show them.
#pragma once

#include <array>
#include <string_view>

#include "atelier/Form.h"

namespace quibbits::atelier {

enum class Mood {
    happy,
    joyous,
    angry,
    crying,
    pain,
    dizzy,
    worried,
    surprised,
    sigh,
    determined,
    inspired
};

struct MoodName {
    Mood mood;
    std::string_view name;
};
constexpr std::array<MoodName, 11> moods{{{Mood::happy, "happy"},
                                          {Mood::joyous, "joyous"},
                                          {Mood::angry, "angry"},
                                          {Mood::crying, "crying"},
                                          {Mood::pain, "pain"},
                                          {Mood::dizzy, "dizzy"},
                                          {Mood::worried, "worried"},
                                          {Mood::surprised, "surprised"},
                                          {Mood::sigh, "sigh"},
                                          {Mood::determined, "determined"},
                                          {Mood::inspired, "inspired"}}};

enum class Distance { near, far };  ///< the far eye of a turned head is a column narrower

Stamp portraitEye(Mood mood, FaceStyle style, Side side, Distance distance);
Stamp portraitBrow(Mood mood, Side side);
Stamp portraitMouth(Mood mood, FaceStyle style);

}  // namespace quibbits::atelier
