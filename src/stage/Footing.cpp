#include "stage/Footing.h"

#include <algorithm>

namespace quibbits {

namespace {

// Panels may float a little off the edge that they belong to.
constexpr double gap = 12;           // points
constexpr double roomForBody = 100;  // points that a panel along a side must leave under it
// A panel higher than this share of the screen is none to stand on.
constexpr double highestPanel = 0.5;
constexpr double widestSide = 0.5;  // of the screen

/// The height of what stands on the bottom at an x.
double topAt(const std::vector<Rect>& standing, double x) {
    double top = 0;
    for (const Rect& panel : standing) {
        if (panel.minX() <= x && x < panel.maxX()) top = std::max(top, panel.maxY());
    }
    return top;
}

/// The height of the highest thing beneath a span.
double topUnder(const std::vector<Rect>& standing, const Rect& span) {
    double top = 0;
    for (const Rect& panel : standing) {
        if (panel.minX() < span.maxX() && span.minX() < panel.maxX()) {
            top = std::max(top, panel.maxY());
        }
    }
    return top;
}

/// From side to side, with one row for each stretch of one height.
std::vector<Ground> rowsOf(Range room, const std::vector<Rect>& standing) {
    std::vector<double> edges{room.lo, room.hi};
    for (const Rect& panel : standing) {
        for (const double x : {panel.minX(), panel.maxX()}) {
            if (room.lo < x && x < room.hi) edges.push_back(x);
        }
    }
    std::ranges::sort(edges);
    std::vector<Ground> rows{{{room.lo, room.lo}, 0, true}};
    for (std::size_t i = 0; i + 1 < edges.size(); ++i) {
        const double top = topAt(standing, (edges[i] + edges[i + 1]) / 2);
        if (top == rows.back().y) {
            rows.back().span.hi = edges[i + 1];
        } else {
            rows.push_back({{edges[i], edges[i + 1]}, top, true});
        }
    }
    if (rows.back().y > 0) rows.push_back({{room.hi, room.hi}, 0, true});
    return rows;
}

}  // namespace

Footing footingOf(Size screen, std::vector<Rect> panels) {
    for (Rect& panel : panels) panel = panel.intersected({0, 0, screen.width, screen.height});
    std::erase_if(panels, [](const Rect& panel) { return panel.isEmpty(); });
    std::ranges::sort(panels, {}, &Rect::minY);

    std::vector<Rect> standing;
    std::vector<Rect> sides;
    for (const Rect& panel : panels) {
        const double beneath = topUnder(standing, panel);
        const bool isLow = panel.height <= highestPanel * screen.height;
        if (isLow && panel.minY() <= beneath + gap) {
            standing.push_back(panel);
        } else if (!isLow && panel.width <= widestSide * screen.width &&
                   panel.minY() < beneath + roomForBody) {
            sides.push_back(panel);
        }
    }
    Range room{0, screen.width};
    for (const Rect& panel : sides) {
        if (panel.minX() <= gap) room.lo = std::max(room.lo, panel.maxX());
        if (panel.maxX() >= screen.width - gap) room.hi = std::min(room.hi, panel.minX());
    }
    if (room.lo > room.hi) room = {0, screen.width};
    return {room, rowsOf(room, standing)};
}

}  // namespace quibbits
