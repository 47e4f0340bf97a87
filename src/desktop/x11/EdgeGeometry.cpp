// Where panels lie on a monitor, from what they and the window manager say.

#include <algorithm>

#include "desktop/x11/EdgePanels.h"

namespace quibbits::x11 {
namespace {

constexpr double leastWorkArea = 1.0 / 3;  // of a monitor; less is nonsense

int rightOf(const PixelRect& r) {
    return r.x + r.width;
}
int bottomOf(const PixelRect& r) {
    return r.y + r.height;
}

/// A rectangle from edge to edge.
PixelRect between(int left, int top, int right, int bottom) {
    return {left, top, right - left, bottom - top};
}

/// The first row that a panel at the bottom reserves. Struts count from the edge of the whole
/// display; some panels count from their monitor's or from another panel's, so that all of them
/// lies above what they reserve, and then their own place tells.
int firstRow(const PixelRect& monitor, const PixelRect& display, const EdgePanel& panel) {
    const int told = bottomOf(display) - panel.strut.bottom;
    const bool isPossible = monitor.y < told && told < bottomOf(panel.frame);
    return isPossible ? told : panel.frame.y;
}

/// The part of a rectangle within a strut's first and last pixel.
PixelRect acrossSpan(PixelRect r, int first, int last) {
    if (first >= last) return r;
    return r.intersected(between(first, r.y, last + 1, bottomOf(r)));
}
PixelRect downSpan(PixelRect r, int first, int last) {
    if (first >= last) return r;
    return r.intersected(between(r.x, first, rightOf(r), last + 1));
}

/// A panel at the bottom, from the lower of what it reserves and what is seen down to the edge.
PixelRect atBottom(const PixelRect& monitor, const PixelRect& display, const EdgePanel& panel) {
    const PixelRect seen = panel.solid.isEmpty() ? panel.frame : panel.solid;
    const auto& spans = panel.strut.spans;
    const PixelRect across = acrossSpan(seen.intersected(monitor), spans[6], spans[7]);
    const int top = std::max({firstRow(monitor, display, panel), across.y, monitor.y});
    return between(across.x, top, rightOf(across), bottomOf(monitor));
}

}  // namespace

std::optional<PixelRect> placeOn(PixelRect monitor, PixelRect display, const EdgePanel& panel) {
    const auto& [left, right, top, bottom, spans] = panel.strut;
    PixelRect place = panel.solid.intersected(monitor);
    if (bottom > 0) {
        if (panel.frame.intersected(monitor).isEmpty()) return std::nullopt;
        place = atBottom(monitor, display, panel);
    } else if (left > 0 || right > 0) {
        if (place.isEmpty()) place = panel.frame.intersected(monitor);
        if (left > monitor.x) place = place.intersected(between(0, place.y, left, bottomOf(place)));
        if (right > 0 && rightOf(display) - right < rightOf(monitor)) {
            place = place.intersected(
                between(rightOf(display) - right, place.y, rightOf(display), bottomOf(place)));
        }
        place =
            left > 0 ? downSpan(place, spans[0], spans[1]) : downSpan(place, spans[2], spans[3]);
    } else if (top == 0 && 2 * place.width > monitor.width && 2 * place.height > monitor.height) {
        return std::nullopt;  // lies over everything, and is no panel
    }
    return place.isEmpty() ? std::nullopt : std::optional(place);
}

PixelRect withoutPanels(PixelRect monitor, PixelRect display,
                        const std::vector<EdgePanel>& panels) {
    int left = monitor.x;
    int top = monitor.y;
    int right = rightOf(monitor);
    int bottom = bottomOf(monitor);
    for (const auto& panel : panels) {
        if (!panel.frame.intersects(monitor)) continue;
        const auto& strut = panel.strut;
        if (strut.left > 0) left = std::max(left, strut.left);
        if (strut.right > 0) right = std::min(right, rightOf(display) - strut.right);
        if (strut.top > 0) top = std::max(top, strut.top);
        if (strut.bottom > 0) bottom = std::min(bottom, firstRow(monitor, display, panel));
    }
    const PixelRect rest = between(left, top, right, bottom);
    return rest.isEmpty() ? monitor : rest;
}

std::vector<PixelRect> roomsBeside(PixelRect monitor, PixelRect known, PixelRect workArea) {
    const PixelRect free = workArea.intersected(monitor);
    std::vector<PixelRect> rooms;
    if (static_cast<double>(free.area()) < leastWorkArea * static_cast<double>(monitor.area())) {
        return rooms;
    }
    if (bottomOf(free) < bottomOf(known)) {
        rooms.push_back(between(monitor.x, bottomOf(free), rightOf(monitor), bottomOf(monitor)));
    }
    if (free.x > known.x) {
        rooms.push_back(between(monitor.x, free.y, free.x, bottomOf(free)));
    }
    if (rightOf(free) < rightOf(known)) {
        rooms.push_back(between(rightOf(free), free.y, rightOf(monitor), bottomOf(free)));
    }
    return rooms;
}

}  // namespace quibbits::x11
