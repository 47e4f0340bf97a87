#pragma once
// When creatures speak and the faces they make. What they say comes from their species, or from the
// lines here.

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Random.h"

namespace quibbits {

/// An occasion for speech.
enum class Moment {
    curious,
    recognized,
    startled,
    petted,
    pettedSleepy,
    pickedUp,
    pickedUpWorried,
    droppedHard,
    dizzy,
    askBerry,
    ateFavourite,
    ate,
    ateDisliked,
    full,
    woke,
    userBack,
    itemNear,
    offline,
    online,
    hot,
    deleted,
    celebrate,
    failed,
    done,
    hello,
    playing,
    morning,
};
inline constexpr std::size_t momentCount = 27;

/// A portrait's expression.
enum class Face {
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
    inspired,
};
inline constexpr std::size_t faceCount = 11;

std::string_view rawValue(Face face);
std::string_view rawValue(Moment moment);

using Lines = std::vector<std::string_view>;
/// A species' own lines. A moment with an empty list is passed over in silence.
using VoiceTable = std::map<Moment, Lines>;

/// What any creature says when its species has no line of its own.
std::span<const std::string_view> baseLines(Moment moment);

/// Who is speaking: what "{name}" and "{cry}" stand for.
struct Speaker {
    std::string name;
    std::string cry;
};

/// One of the lines for the moment, each as likely, with the speaker's words filled in.
std::optional<std::string> pickLine(const VoiceTable& voice, Moment moment, const Speaker& speaker,
                                    Random& random);

}  // namespace quibbits
