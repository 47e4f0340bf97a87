// Portraits: a form's head from close by, in one of its moods, before a backdrop of that mood.
#pragma once

#include "atelier/Moods.h"
#include "atelier/Sheet.h"

namespace quibbits::atelier {

constexpr int portraitSize = 40;

/// The drawing without its backdrop.
Drawing drawPortrait(const Form& form, Mood mood);

Image paintPortrait(const Drawing& drawing, Mood mood, const Palette& palette);

}  // namespace quibbits::atelier
