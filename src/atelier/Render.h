// From a model to a drawing: rays, tones, clean edges, outlines, stamps.
#pragma once

#include "atelier/Ink.h"
#include "atelier/Rig.h"

namespace quibbits::atelier {

/// The size of a drawing and where the foot point lies in it.
struct Canvas {
    int width = 0;
    int height = 0;
    int originX = 0;
    int originY = 0;
};

/// Draws a model without its motes.
Drawing render(const Model& model, const Canvas& canvas);

/// Adds the motes, in rows above `groundRow` only (counted from the top of the drawing): whoever
/// measures the feet takes the lowest drawn row for the ground.
void scatterMotes(const Model& model, int groundRow, Drawing& drawing);

}  // namespace quibbits::atelier
