#pragma once
// What makes the items, by the kind of their views.

#include <QLayout>

#include "Item.h"

namespace quibbits::window {

// Each makes nothing for a view that is not of its kinds.
Item* makeBox(const views::View& view, Tell tell);      // arranges others
Item* makeFrame(const views::View& view, Tell tell);    // has a frame or a title round others
Item* makePages(const views::View& view, Tell tell);    // shows one of several
Item* makeControl(const views::View& view, Tell tell);  // can be acted upon
Item* makeDialog(const views::View& view, Tell tell);   // asks in a window of its own
Item* makeLeaf(const views::View& view, Tell tell);     // is only looked at

/// Takes everything out of a layout; the items stay.
inline void clear(QLayout& layout) {
    while (QLayoutItem* each = layout.takeAt(0)) delete each;
}

}  // namespace quibbits::window
