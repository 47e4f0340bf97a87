#pragma once
// A path made ready to be walked along: its pieces with the share of the way at which each begins.
// Holds its own copy of the points, so it may outlive the path.

#include <vector>

#include "layers/Path.h"

namespace quibbits {

class PathMeasure {
public:
    explicit PathMeasure(const Path& path);

    /// Where one is after a share of the way; before 0 the start, after 1 the end. The elements
    /// share the way by their length; within an element the curve's own parameter runs evenly, as
    /// the gravity of a jump does.
    Point at(double share) const;

private:
    struct Piece {
        Path::Element element;
        Point start;
        double begins = 0;  // the length of all pieces before it
        double length = 0;
    };
    std::vector<Piece> pieces_;
    Point only_;  // where a path without any length stands
    double length_ = 0;
};

}  // namespace quibbits
