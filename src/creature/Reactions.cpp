#include "creature/Reactions.h"

#include <algorithm>
#include <array>

namespace quibbits {

PowerReaction reactTo(const PowerChange& change, const Presence& presence, bool quiet) {
    if (!presence.isAtHand() || quiet) return PowerReaction::none;
    if (change.isCharging && !change.wasCharging) return PowerReaction::drawPower;
    if (!change.isCharging && change.wasCharging) return PowerReaction::nod;
    if (change.before == change.now) return PowerReaction::none;
    if (change.now == Mood::fainted) {
        return presence.isFainted() ? PowerReaction::none : PowerReaction::faint;
    }
    return presence.isFainted() ? PowerReaction::recover : PowerReaction::thinkAnew;
}

Word meaning(std::string_view word) {
    struct Row {
        std::string_view word;
        Word meaning;
    };
    static constexpr std::array rows{
        Row{"focus", Word::focus},       Row{"unfocus", Word::unfocus},
        Row{"celebrate", Word::triumph}, Row{"pass", Word::triumph},
        Row{"success", Word::triumph},   Row{"fail", Word::failure},
        Row{"failed", Word::failure},    Row{"error", Word::failure},
        Row{"done", Word::finish},       Row{"finished", Word::finish},
    };
    const auto row = std::ranges::find(rows, word, &Row::word);
    return row == rows.end() ? Word::greeting : row->meaning;
}

}  // namespace quibbits
