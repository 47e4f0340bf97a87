#pragma once
// Which part of a panel takes the mouse. Compositors repaint a whole window when its input region
// changes, so the region does not follow a creature about: it is set where creatures rest, and
// where they move only while the pointer is close. Knows no X, and no time but what it is told.

#include <optional>
#include <vector>

#include "platform/Geometry.h"
#include "platform/RunLoop.h"

namespace quibbits::x11 {

class HotArea {
public:
    static constexpr double closeBy = 120;  // points; nearer than this the region follows
    static constexpr double touching = 24;  // nearer than this it follows at once
    static constexpr Seconds restAfter = 0.25;
    static constexpr Seconds betweenChanges = 0.1;  // while close by and not touching

    /// The rectangles that take the mouse by themselves, in the panel's coordinates.
    void setWanted(std::vector<Rect> rects, Instant now);
    /// True while only the wanted rectangles take the mouse.
    void setIgnores(bool ignores) { ignores_ = ignores; }
    bool ignores() const { return ignores_; }

    struct Region {
        bool whole = false;  // the whole panel
        std::vector<Rect> rects;
        bool operator==(const Region&) const = default;
    };
    /// The region for the pointer's place, and when to ask again although nothing has changed.
    struct Decision {
        Region region;
        std::optional<Instant> askAgain;
        bool isClose = false;  // the pointer is so near that it should be watched closely
        bool isStale = false;  // creatures stand elsewhere than the region says
    };
    Decision decide(Point pointer, Instant now);

private:
    double distanceTo(Point pointer) const;

    std::vector<Rect> wanted_;
    Region applied_;
    bool ignores_ = true;
    Instant lastWish_ = -1e9;
    Instant lastChange_ = -1e9;
};

}  // namespace quibbits::x11
