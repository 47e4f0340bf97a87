#pragma once
// Setting and drawing text. Fonts are the dearest thing in the program's memory, so what does the
// work is a module of its own, beside the program, that is loaded when the first text is measured
// or drawn. A program may also be linked with it; then nothing is loaded.

#include "layers/Content.h"
#include "platform/Text.h"

using cairo_t = struct _cairo;

namespace quibbits {

class TextEngine {
public:
    virtual ~TextEngine() = default;
    virtual Size measure(const StyledText& text, Size limit) const = 0;
    /// Draws into a box whose upper left corner is the context's origin, with y downwards.
    virtual void draw(cairo_t* context, const Text& text, Size box) const = 0;
};

/// The one that is linked or loaded. Where the module is missing, text takes up space by a rough
/// estimate and is not drawn.
const TextEngine& textEngine();

}  // namespace quibbits

/// What the module exports; never null.
extern "C" const quibbits::TextEngine* quibbitsTextEngine();
