// What each form learns and at which level. Rows with an effect change what a creature does; the
// others are names on its move list.

#include <array>

#include "rules/Growth.h"

namespace quibbits {

namespace {

namespace effect {

constexpr std::string_view staticJolt =
    "Select files in Finder and press ⌥⌘⌫: zaps them into the Trash.";
constexpr std::string_view sweetPeck = "Greets you with an extra burst of hearts.";
constexpr std::string_view cheekRub = "Petting it builds friendship faster.";
constexpr std::string_view charm = "Dances: to music and in its playful moments.";
constexpr std::string_view fleetDash = "Leaps up big heights: stacked desktop files, high icons.";
constexpr std::string_view mirrorStep = "Learns the Twirl.";
constexpr std::string_view chargeOrb = "Charges up with sparks now and then while plugged in.";
constexpr std::string_view spark = "Celebrates the charger with a Static Jolt and sparks.";
constexpr std::string_view agility = "Learns the Somersault.";
constexpr std::string_view discharge = "`quibbits celebrate` sets off sparks all around.";
constexpr std::string_view thunderbolt = "The file zap becomes a bigger, brighter bolt.";
constexpr std::string_view thunder = "Files not on the Desktop are struck from the sky.";
constexpr std::string_view psychic = "Teleports next to your cursor now and then.";
constexpr std::string_view lick =
    "Licks things now and then (and your screen, once it's a Gloamer).";
constexpr std::string_view hypnosis = "Its stare can make another Quibbit doze off.";
constexpr std::string_view gloomJab = "Gloamer's evolution move.";
constexpr std::string_view gloomOrb = "Its file delete becomes a full Gloom Orb.";
constexpr std::string_view sleepSipper = "Eats a sleeping Quibbit's dreams (a little EXP for it).";

}  // namespace effect

constexpr auto none = std::nullopt;

/// A row of a list that belongs to one stage.
struct Row {
    std::string_view name;
    int level;
    std::optional<std::string_view> effect = none;
};

constexpr std::array mizzleRows{
    Row{"Static Jolt", 1, effect::staticJolt},
    Row{"Fluff Tackle", 1},
    Row{"Bright Eyes", 4},
    Row{"Sweet Peck", 8, effect::sweetPeck},
    Row{"Cheek Rub", 12, effect::cheekRub},
    Row{"Tuft Whip", 16},
    Row{"Charm", 20, effect::charm},
};
static_assert(mizzleRows.size() == 7);

constexpr std::array sparrelRows{
    Row{"Static Jolt", 1, effect::staticJolt},
    Row{"Fluff Tackle", 1},
    Row{"Bright Eyes", 1},
    Row{"Sweet Peck", 1, effect::sweetPeck},
    Row{"Cheek Rub", 1, effect::cheekRub},
    Row{"Tuft Whip", 1},
    Row{"Charm", 1, effect::charm},
    Row{"Fleet Dash", 1, effect::fleetDash},
    Row{"Nut Toss", 4},
    Row{"Mirror Step", 8, effect::mirrorStep},
    Row{"Charge Orb", 12, effect::chargeOrb},
    Row{"Bough Bound", 16},
    Row{"Spark", 20, effect::spark},
    Row{"Agility", 24, effect::agility},
    Row{"Crackle Claw", 26},
    Row{"Brush Guard", 28},
    Row{"Discharge", 32, effect::discharge},
    Row{"Thunderbolt", 36, effect::thunderbolt},
    Row{"Gale Gather", 40},
    Row{"Thunder", 44, effect::thunder},
};
static_assert(sparrelRows.size() == 20);

/// What both third stages know from the start.
constexpr std::array thirdStageRows{
    Row{"Static Jolt", 1, effect::staticJolt},
    Row{"Fluff Tackle", 1},
    Row{"Bright Eyes", 1},
    Row{"Sweet Peck", 1, effect::sweetPeck},
    Row{"Cheek Rub", 1, effect::cheekRub},
    Row{"Tuft Whip", 1},
    Row{"Charm", 1, effect::charm},
    Row{"Fleet Dash", 1, effect::fleetDash},
    Row{"Nut Toss", 1},
    Row{"Mirror Step", 1, effect::mirrorStep},
    Row{"Charge Orb", 1, effect::chargeOrb},
    Row{"Bough Bound", 1},
    Row{"Spark", 1, effect::spark},
    Row{"Agility", 1, effect::agility},
    Row{"Crackle Claw", 1},
    Row{"Brush Guard", 1},
    Row{"Discharge", 1, effect::discharge},
    Row{"Gale Gather", 1},
    Row{"Thunder", 1, effect::thunder},
};
static_assert(thirdStageRows.size() == 19);

constexpr std::array thrummetRows{
    Row{"Storm Fist", 1},
    Row{"Thunderbolt", 5, effect::thunderbolt},
};

constexpr std::array coralisRows{
    Row{"Psychic", 1, effect::psychic},
    Row{"Thunderbolt", 5, effect::thunderbolt},
};

constexpr std::array wispulRows{
    Row{"Lick", 1, effect::lick},
    Row{"Cold Breath", 1},
    Row{"Hypnosis", 4, effect::hypnosis},
    Row{"Fog Veil", 8},
    Row{"Grudge Look", 12},
    Row{"Will-o'-Wink", 16},
    Row{"Creak", 20},
    Row{"Shade Slip", 24},
    Row{"Lantern Glare", 28},
    Row{"Hollow Laugh", 32},
    Row{"Chill Wind", 36},
    Row{"Gloom Orb", 40, effect::gloomOrb},
    Row{"Night Tide", 44},
    Row{"Sleep Sipper", 48, effect::sleepSipper},
};
static_assert(wispulRows.size() == 14);

constexpr std::array gloamerRows{
    Row{"Gloom Jab", 1, effect::gloomJab},
    Row{"Lick", 1, effect::lick},
    Row{"Cold Breath", 1},
    Row{"Hypnosis", 1, effect::hypnosis},
    Row{"Fog Veil", 1},
    Row{"Grudge Look", 12},
    Row{"Will-o'-Wink", 16},
    Row{"Creak", 20},
    Row{"Shade Slip", 24},
    Row{"Lantern Glare", 30},
    Row{"Hollow Laugh", 36},
    Row{"Chill Wind", 42},
    Row{"Gloom Orb", 48, effect::gloomOrb},
    Row{"Night Tide", 54},
    Row{"Sleep Sipper", 60, effect::sleepSipper},
};
static_assert(gloamerRows.size() == 15);

constexpr std::array umbroolRows{
    Row{"Lantern Swing", 1},
    Row{"Long Shadow", 1},
};

enum class Form { plain, coralis };

/// Copies a stage's rows into the line's list and gives the next free place.
template <std::size_t all, std::size_t some>
constexpr std::size_t enter(std::array<Move, all>& list, std::size_t at, Stage stage, Form form,
                            const std::array<Row, some>& rows) {
    for (const Row& row : rows) {
        list[at++] = {row.name, row.level, stage, form == Form::coralis, row.effect};
    }
    return at;
}

constexpr auto electricMoves = [] {
    std::array<Move, mizzleRows.size() + sparrelRows.size() + 2 * thirdStageRows.size() +
                         thrummetRows.size() + coralisRows.size()>
        list{};
    std::size_t at = enter(list, 0, Stage::mizzle, Form::plain, mizzleRows);
    at = enter(list, at, Stage::sparrel, Form::plain, sparrelRows);
    at = enter(list, at, Stage::thrummet, Form::plain, thirdStageRows);
    at = enter(list, at, Stage::thrummet, Form::plain, thrummetRows);
    at = enter(list, at, Stage::thrummet, Form::coralis, thirdStageRows);
    enter(list, at, Stage::thrummet, Form::coralis, coralisRows);
    return list;
}();

constexpr auto ghostMoves = [] {
    std::array<Move, wispulRows.size() + gloamerRows.size() + umbroolRows.size()> list{};
    std::size_t at = enter(list, 0, Stage::wispul, Form::plain, wispulRows);
    at = enter(list, at, Stage::gloamer, Form::plain, gloamerRows);
    enter(list, at, Stage::umbrool, Form::plain, umbroolRows);
    return list;
}();

}  // namespace

std::span<const Move> Growth::moves() {
    return electricMoves;
}
std::span<const Move> UmbroolLine::moves() {
    return ghostMoves;
}

}  // namespace quibbits
