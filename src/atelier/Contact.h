// Contact sheets and strips: enlarged pictures for looking at the drawings.
#pragma once

#include "atelier/Sheet.h"

namespace quibbits::atelier {

/// Every animation's side view with a row each, below the eight directions of Idle in both paints
/// and the portraits.
Image contactSheet(const Form& form);

/// One animation's side view, four times as large, on light and on dark.
Image strip(const Form& form, const Animation& animation);

}  // namespace quibbits::atelier
