#pragma once
// Symbols as glyphs of the text fonts that every desktop has.

#include <QString>
#include <string_view>

namespace quibbits::window {

/// A dot for a symbol that nobody knows; empty for no symbol.
QString glyph(std::string_view symbol);

}  // namespace quibbits::window
