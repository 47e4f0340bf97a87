#pragma once
// Where the user's party comes from, which decides the form of a third electric stage.

#include <string>
#include <string_view>

#include "platform/UserDefaults.h"

namespace quibbits {

enum class Region { fernvale, coralis };

std::string_view rawValue(Region region);
/// For the user: "Fernvale".
std::string displayName(Region region);
/// The region that the user has chosen under "region"; anything unknown is fernvale.
Region currentRegion(const UserDefaults& defaults);

}  // namespace quibbits
