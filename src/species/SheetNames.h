#pragma once
// How the resource sets of the species are named.

#include <string>

#include "rules/Growth.h"

namespace quibbits {

/// The base of the shiny set for a shiny creature; an egg never has one.
inline std::string withShiny(std::string base, Stage stage, bool shiny) {
    if (shiny && stage != Stage::egg) base += "-shiny";
    return base;
}

}  // namespace quibbits
