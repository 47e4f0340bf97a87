// Sparks, motes and stars around a creature that charges or strikes.
#pragma once

#include "atelier/Form.h"

namespace quibbits::atelier {

/// Adds the pose's effect to the model. `foot` is the foot point with the directions of the view.
/// Most of it lies behind the creature: over a face, sparks are noise.
void addEffect(Model& model, const Form& form, const Frame& foot, const Pose& pose);

}  // namespace quibbits::atelier
