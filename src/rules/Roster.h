#pragma once
// The species of the party, and those that are yet to come.

#include <array>
#include <string_view>

namespace quibbits {

struct Roster {
    std::string_view id;  // store id for a species that lives in the party
    std::string_view name;
    std::string_view type;
    std::string_view blurb;
};

inline constexpr std::array roster{
    Roster{"pet", "Sparrel", "Electric", "Climbs your desktop, zaps files with Thunderbolt."},
    Roster{"umbrool", "Umbrool", "Ghost / Poison",
           "Flies anywhere, sinks through windows, steals your cursor."},
    Roster{"emberhog", "Emberhog", "Fire", "Coming soon."},
    Roster{"galeplume", "Galeplume", "Normal / Flying", "Coming soon."},
    Roster{"foresage", "Foresage", "Psychic", "Coming soon."},
    Roster{"tideback", "Tideback", "Water / Ice", "Coming soon."},
};

}  // namespace quibbits
