#pragma once
// The rules of growing up: the forms that a creature passes through, how much experience a level
// takes, and what each line learns. Pure tables and pure functions.

#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>

namespace quibbits {

/// A form on one of the two evolution lines. Both lines begin with the egg, which by itself counts
/// as electric.
enum class Stage { egg, mizzle, sparrel, thrummet, wispul, gloamer, umbrool };
inline constexpr int stageCount = 7;

/// How fast levels come. Only mediumFast and mediumSlow have creatures today.
enum class GrowthRate { erratic, fast, mediumFast, mediumSlow, slow, fluctuating };
inline constexpr int growthRateCount = 6;

inline constexpr int maxLevel = 100;

/// The word that is saved.
std::string_view rawValue(Stage stage);
std::optional<Stage> stageNamed(std::string_view raw);
/// The raw value with a capital letter: "Sparrel".
std::string displayName(Stage stage);
/// The whole line that the stage stands on, egg first.
std::span<const Stage> line(Stage stage);
GrowthRate growthRate(Stage stage);

/// Total experience at which a level begins; whole, 0 at level 1. Levels run from 1 to 100.
double expForLevel(GrowthRate rate, int level);
/// The highest level whose total the experience has reached, 1 to 100.
int levelFor(GrowthRate rate, double exp);

/// A row of a learnset.
struct Move {
    std::string_view name;
    int level = 1;
    Stage stage = Stage::egg;
    bool coralis = false;  // of the regional third stage only
    /// What knowing it changes in this program; none for a move that is only a name.
    std::optional<std::string_view> effect;
};

/// Names of moves that a creature knows.
using MoveNames = std::set<std::string_view>;

/// What the guide tells of a form.
struct FieldbookEntry {
    std::string_view label;
    std::string_view text;
};
struct Fieldbook {
    std::string_view genus;
    std::string_view type;
    std::span<const FieldbookEntry> entries;
};

/// The electric line.
namespace Growth {

std::span<const Move> moves();
/// What a creature knows: the rows of its stage and of all stages before it up to its level. The
/// regional third stage has rows of its own in place of the plain third stage's.
MoveNames known(Stage stage, int level, bool coralis);
/// Display text for any form, of either line.
Fieldbook fieldbook(Stage stage, bool coralis);

}  // namespace Growth

/// The ghost line.
namespace UmbroolLine {

std::span<const Move> moves();
/// Like Growth::known, but the second stage learns from the first one's list up to level 24 only.
MoveNames known(Stage stage, int level);

}  // namespace UmbroolLine

}  // namespace quibbits
