#pragma once
// What an event of the world means to a creature, as rules on plain values.

#include <optional>
#include <string_view>

#include "creature/Life.h"
#include "creature/Presence.h"

namespace quibbits {

/// The charger, the battery or the heat as they were and as they are.
struct PowerChange {
    bool wasCharging = false;
    bool isCharging = false;
    std::optional<Mood> before;
    Mood now = Mood::happy;
};
enum class PowerReaction { none, drawPower, nod, faint, recover, thinkAnew };
/// Held, in its ball, in a show or told to be quiet, a creature answers nothing.
PowerReaction reactTo(const PowerChange& change, const Presence& presence, bool quiet);

/// What a word from outside means.
enum class Word { focus, unfocus, triumph, failure, finish, greeting };
Word meaning(std::string_view word);

}  // namespace quibbits
