#pragma once
// The measures of the party dial: a half wheel of six slots, a plate in its hub, and a card below
// that hangs on a neck. All of it in the view's coordinates, points with y upwards. Pure numbers:
// nothing here knows a layer or a creature.

#include <optional>
#include <vector>

#include "layers/Path.h"
#include "platform/Geometry.h"

namespace quibbits::DialShape {

constexpr Size size{316, 272};
constexpr double middle = size.width / 2;
constexpr double top = size.height;
constexpr Point hub{middle, top};  // the wheel's centre

constexpr double wheelRadius = 114;  // to the middle of the band, where the slots lie
constexpr double bandWidth = 64;
constexpr double bandBegins = 3.3300882;  // radians
constexpr double bandEnds = 6.0946897;

constexpr Rect plate{middle - 74, top - 86, 148, 48};
constexpr double plateRadius = 20;
constexpr Rect card{middle - 128, 6, 256, 102};
constexpr double cardRadius = 18;
constexpr double neckWidth = 60;

constexpr int slotCount = 6;
constexpr double slotSide = 46;
constexpr double slotReach = 27;  // a slot is hit from so far around its centre

Point slotCenter(int index);
/// The first slot whose reach holds the point.
std::optional<int> slot(Point at);

/// How the wheel's arms end: cut off at the view's upper edge, as if they came out of the bar above
/// it, or round, a little beyond that edge, where there is no bar.
enum class Ends { cut, round };

/// The one line around wheel, plate, neck and card together.
Path outline(Ends ends);
/// A few rectangles that together cover the outline, hardly more, and the wheel's hub.
std::vector<Rect> cover(Ends ends);

}  // namespace quibbits::DialShape
