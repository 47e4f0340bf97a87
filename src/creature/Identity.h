#pragma once
// What a creature is, as against how it feels: its stage and form, its nature, its experience.

#include <optional>
#include <string>

#include "platform/Random.h"
#include "platform/UserDefaults.h"
#include "rules/Growth.h"
#include "rules/Nature.h"

namespace quibbits {

struct Identity {
    Stage stage = Stage::egg;
    std::optional<std::string> form;  // "coralis" on the third electric stage, or none
    bool shiny = false;
    Nature nature;
    std::optional<Date> shimmerpoxUntil;  // stays set after the end: cured
    std::string gender;                   // "♀" or "♂"
    double exp = 0;

    int level() const { return levelFor(growthRate(stage), exp); }

    /// What hatches: a first stage without experience, of a nature and gender that chance gives.
    static Identity hatched(Stage stage, Random& random, bool alwaysShiny);
    /// The same creature back in its egg.
    Identity asEgg() const { return {.nature = nature, .gender = gender}; }
    /// As saved under the creature's keys. What is missing or of the wrong kind is an egg's, and
    /// nature and gender are drawn anew; experience is brought back into its bounds.
    static Identity load(const UserDefaults& saved, const std::string& store, Random& random);
    void save(UserDefaults& saved, const std::string& store) const;
};

}  // namespace quibbits
