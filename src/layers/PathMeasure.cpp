#include "layers/PathMeasure.h"

namespace quibbits {

namespace {

Point mix(Point a, Point b, double t) {
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

Point pointOn(const Path::Element& element, Point start, double t) {
    switch (element.verb) {
        case Path::Verb::quad: {
            const Point a = mix(start, element.control1, t);
            return mix(a, mix(element.control1, element.end, t), t);
        }
        case Path::Verb::cubic: {
            const Point a = mix(start, element.control1, t);
            const Point b = mix(element.control1, element.control2, t);
            const Point c = mix(element.control2, element.end, t);
            return mix(mix(a, b, t), mix(b, c, t), t);
        }
        default: return mix(start, element.end, t);
    }
}

double lengthOf(const Path::Element& element, Point start) {
    if (element.verb == Path::Verb::line || element.verb == Path::Verb::close) {
        return distance(start, element.end);
    }
    constexpr int chords = 32;
    double length = 0;
    Point last = start;
    for (int i = 1; i <= chords; ++i) {
        const Point next = pointOn(element, start, static_cast<double>(i) / chords);
        length += distance(last, next);
        last = next;
    }
    return length;
}

}  // namespace

PathMeasure::PathMeasure(const Path& path) {
    if (path.isEmpty()) return;
    Point pen = path.elements().front().end;
    only_ = pen;
    for (const auto& element : path.elements()) {
        if (element.verb != Path::Verb::move) {
            const double length = lengthOf(element, pen);
            if (length > 0) pieces_.push_back({element, pen, length_, length});
            length_ += length;
        }
        pen = element.end;
    }
}

Point PathMeasure::at(double share) const {
    if (pieces_.empty()) return only_;
    const double along = std::clamp(share, 0.0, 1.0) * length_;
    auto piece = std::upper_bound(pieces_.begin(), pieces_.end(), along,
                                  [](double way, const Piece& p) { return way < p.begins; });
    if (piece != pieces_.begin()) --piece;
    const double t = std::clamp((along - piece->begins) / piece->length, 0.0, 1.0);
    return pointOn(piece->element, piece->start, t);
}

}  // namespace quibbits
