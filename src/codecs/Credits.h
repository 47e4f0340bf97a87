#pragma once
// The list of who drew the creatures' pictures, read from its JSON text.

#include <optional>
#include <string_view>
#include <vector>

#include "platform/Resources.h"

namespace quibbits {

/// One array of objects, each with every field of a Credit under its name. Anything else, and one
/// object with a field that is missing or of another type, gives nothing.
std::optional<std::vector<Credit>> readCredits(std::string_view json);

}  // namespace quibbits
