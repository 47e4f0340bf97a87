// One animation in motion, for judging it by eye.
#pragma once

#include <cstddef>
#include <vector>

#include "atelier/Animations.h"
#include "atelier/Form.h"

namespace quibbits::atelier {

/// An animated PNG file of the side view: at true speed, enlarged threefold, over and over.
std::vector<std::byte> play(const Form& form, const Animation& animation);

}  // namespace quibbits::atelier
