#pragma once
// Everything that a creature can decide to do.

#include <array>
#include <optional>
#include <string_view>

#include "platform/Geometry.h"

namespace quibbits {

enum class Intent {
    nap,
    rest,
    sit,
    askForBerry,
    inspect,
    explore,
    patrol,
    visit,
    play,
    dance,
    chargeUp,
    surfLaps,
    levitate,
    teleport,
    daydream,
    yawn,
    sniff,
    hum,
    bask,
    fly,
    phase,
    lick,
    snatch,
    clone,
    shadowGag,
    prank,
};
inline constexpr std::size_t intentCount = 26;

struct IntentRow {
    Intent intent;
    std::string_view raw;
    std::string_view label;           // as the Why view tells it
    bool isActive;                    // choosing it burns boredom
    std::optional<Seconds> coolDown;  // how long doing it again is damped
};

const std::array<IntentRow, intentCount>& allIntents();
const IntentRow& row(Intent intent);
inline std::string_view rawValue(Intent intent) {
    return row(intent).raw;
}
inline bool isActive(Intent intent) {
    return row(intent).isActive;
}

}  // namespace quibbits
