#include "desktop/x11/HotArea.h"

#include <algorithm>
#include <limits>

namespace quibbits::x11 {
namespace {

double distanceBetween(Point p, const Rect& r) {
    const double dx = std::max({r.minX() - p.x, 0.0, p.x - r.maxX()});
    const double dy = std::max({r.minY() - p.y, 0.0, p.y - r.maxY()});
    return std::hypot(dx, dy);
}

}  // namespace

void HotArea::setWanted(std::vector<Rect> rects, Instant now) {
    if (rects == wanted_) return;
    wanted_ = std::move(rects);
    lastWish_ = now;
}

double HotArea::distanceTo(Point pointer) const {
    double nearest = std::numeric_limits<double>::infinity();
    for (const auto* rects : {&wanted_, &applied_.rects}) {
        for (const auto& rect : *rects) nearest = std::min(nearest, distanceBetween(pointer, rect));
    }
    return nearest;
}

HotArea::Decision HotArea::decide(Point pointer, Instant now) {
    const double away = distanceTo(pointer);
    const bool isClose = away <= closeBy;
    const bool inWanted =
        std::ranges::any_of(wanted_, [&](const Rect& r) { return r.contains(pointer); });
    std::optional<Instant> askAgain;
    Region next{.whole = !ignores_ && !inWanted};
    if (!next.whole && applied_ != Region{.rects = wanted_}) {
        const bool rests = now >= lastWish_ + restAfter;
        const bool mayFollow = isClose && now >= lastChange_ + betweenChanges;
        if (rests || mayFollow || away <= touching || applied_.whole) {
            next.rects = wanted_;
        } else if (isClose) {
            next = applied_;
            askAgain = lastChange_ + betweenChanges;
        } else {
            askAgain = lastWish_ + restAfter;  // until then nothing of the panel takes the mouse
        }
    } else if (!next.whole) {
        next.rects = wanted_;
    }
    if (next != applied_) {
        applied_ = next;
        lastChange_ = now;
    }
    const bool stale = !next.whole && next.rects != wanted_;
    return {std::move(next), askAgain, isClose, stale};
}

}  // namespace quibbits::x11
