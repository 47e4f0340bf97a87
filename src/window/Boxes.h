#pragma once
// Items that arrange others, and those that stand alone.

#include "Item.h"

namespace quibbits::window {

/// Nothing when the view is no box.
Item* makeBox(const views::View& view, Tell tell);
/// Nothing when the view is no leaf.
Item* makeLeaf(const views::View& view, Tell tell);

}  // namespace quibbits::window
