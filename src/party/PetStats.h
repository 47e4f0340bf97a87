#pragma once
// The records through which the dial and the settings see a creature: a snapshot of plain values,
// and closures over weak references.

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "body/Sheets.h"
#include "brain/Brain.h"
#include "platform/Date.h"
#include "platform/Geometry.h"
#include "platform/Image.h"
#include "rules/Growth.h"
#include "rules/Item.h"
#include "rules/Nature.h"

namespace quibbits {

struct Ability {
    std::string name;
    std::string effect;
    bool operator==(const Ability&) const = default;
};

/// A creature as it is at one moment.
struct PetStats {
    enum class Shimmerpox { none, infected, cured };

    std::string name;
    std::string gender;
    Nature nature;
    Ability ability;
    bool shiny = false;
    bool coralis = false;
    Shimmerpox shimmerpox = Shimmerpox::none;
    Stage stage = Stage::egg;
    int level = 1;
    double exp = 0;
    double nextLevelEXP = 0;   // total at which the next level begins
    double levelProgress = 0;  // share of the way to the next level; 1 at the highest
    double friendship = 0;     // 0 to 255
    double hunger = 0;         // 0 full, 1 starving
    double energy = 0;
    Image portrait;
    bool canEvolve = false;
    std::optional<Item> evolveItem;
    MoveNames known;
};

/// Why a creature does what it does.
struct Why {
    std::optional<Intent> choice;
    Date at;
    std::vector<Option> options;
    std::vector<std::pair<std::string, double>> needs;
};

/// A creature as the dial sees and drives it. May outlive the creature; then it does nothing.
struct PartyMember {
    std::function<PetStats()> stats;
    std::function<Anim()> portrait;
    std::function<bool()> isOut;
    std::function<void(Point at)> toggle;  // in global coordinates
};

/// A creature as the settings see and drive it.
struct PetControls {
    std::string id;  // the store id
    std::function<PetStats()> stats;
    std::function<std::vector<NamedAnim>()> animations;
    std::function<std::vector<Anim>(const std::string& name)> directions;
    std::function<std::vector<std::string>()> playful;
    std::function<void(const std::string& name)> perform;
    std::function<void()> restart;
    std::function<Why()> why;
};

}  // namespace quibbits
