// All forms side by side, for showing what there is.
#pragma once

#include "atelier/Sheet.h"

namespace quibbits::atelier {

enum class Coat { plain, shiny };

/// Every form in a row on one ground, seen from the side and enlarged threefold.
Image lineUp(Coat coat);

}  // namespace quibbits::atelier
