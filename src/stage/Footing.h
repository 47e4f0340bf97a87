#pragma once
// What the panels along a screen's edges leave creatures: rows to walk on along the bottom, and the
// room between panels along the sides. Plain values in stage points; knows no screen and no dock.

#include <vector>

#include "body/Ground.h"
#include "platform/Geometry.h"

namespace quibbits {

struct Footing {
    Range room;                // from side to side
    std::vector<Ground> rows;  // from left to right; floor first and last, be they of no width
};

/// Panels that lie on the bottom or on one another are walked on; where several lie above one
/// another the highest counts. One along a side that leaves no room for a body under it bounds the
/// room. Others are passed over.
Footing footingOf(Size screen, std::vector<Rect> panels);

}  // namespace quibbits
