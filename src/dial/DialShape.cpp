#include "dial/DialShape.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quibbits::DialShape {

namespace {

constexpr double pi = std::numbers::pi;
constexpr double outerRadius = wheelRadius + bandWidth / 2;
constexpr double innerRadius = wheelRadius - bandWidth / 2;
constexpr double capRadius = bandWidth / 2;  // the band's ends are round

constexpr double firstSlot = 3.5185837720205684;  // radians
constexpr double betweenSlots = 2.3876104167282426 / 5;

Point onWheel(double radius, double angle) {
    return {hub.x + radius * std::cos(angle), hub.y + radius * std::sin(angle)};
}

double angleFrom(Point center, Point p) {
    const double angle = std::atan2(p.y - center.y, p.x - center.x);
    return angle < 0 ? angle + 2 * pi : angle;
}

/// Where the band's inner edge runs into the plate's upper left corner.
Point plateCrossing() {
    const Point corner{plate.minX() + plateRadius, plate.maxY() - plateRadius};
    const double apart = distance(hub, corner);
    const double along =
        (innerRadius * innerRadius - plateRadius * plateRadius + apart * apart) / (2 * apart);
    const double aside = std::sqrt(innerRadius * innerRadius - along * along);
    const Vector way = (corner - hub) * (1 / apart);
    const Vector upwards{way.dy, -way.dx};
    return hub + way * along + upwards * aside;
}

/// Draws one line, straight from the end of an arc to the beginning of the next.
class Pencil {
public:
    Pencil& arc(Point center, double radius, double from, double to) {
        constexpr double nothing = 1e-3;  // shorter than can be seen
        const Path piece = Path::arc(center, radius, from, to);
        for (const auto& element : piece.elements()) {
            if (element.verb == Path::Verb::cubic) {
                path_.cubicTo(element.end, element.control1, element.control2);
            } else if (path_.isEmpty()) {
                path_.moveTo(element.end);
            } else if (distance(path_.elements().back().end, element.end) > nothing) {
                path_.lineTo(element.end);
            }
        }
        return *this;
    }
    Pencil& lineTo(Point p) {
        path_.lineTo(p);
        return *this;
    }
    Path closed() { return path_.close(); }

private:
    Path path_;
};

}  // namespace

Point slotCenter(int index) {
    return onWheel(wheelRadius, firstSlot + index * betweenSlots);
}

std::optional<int> slot(Point at) {
    for (int i = 0; i < slotCount; ++i) {
        if (distance(slotCenter(i), at) <= slotReach) return i;
    }
    return std::nullopt;
}

Path outline(Ends ends) {
    const Point left = onWheel(wheelRadius, bandBegins);
    const Point right = onWheel(wheelRadius, bandEnds);
    // Where a cap leaves off: at the upper edge, or not before its end.
    const double cut = ends == Ends::cut ? std::asin((top - left.y) / capRadius) : pi / 2;
    const double neck = std::asin(neckWidth / 2 / outerRadius);
    const double neckLeft = middle - neckWidth / 2;
    const double neckRight = middle + neckWidth / 2;
    const Rect corners = card.inset(cardRadius);  // the centres of the card's corners
    const Rect hubs = plate.inset(plateRadius);   // and of the plate's
    const Point crossing = plateCrossing();
    const Point mirrored{2 * middle - crossing.x, crossing.y};
    const Point leftCorner{hubs.minX(), hubs.maxY()};
    const Point rightCorner{hubs.maxX(), hubs.maxY()};

    // Around the outside, counter-clockwise from the upper left; back along the inside.
    return Pencil()
        .arc(left, capRadius, pi - cut, bandBegins)
        .arc(hub, outerRadius, bandBegins, 1.5 * pi - neck)
        .lineTo({neckLeft, card.maxY()})
        .arc({corners.minX(), corners.maxY()}, cardRadius, pi / 2, pi)
        .arc({corners.minX(), corners.minY()}, cardRadius, pi, 1.5 * pi)
        .arc({corners.maxX(), corners.minY()}, cardRadius, 1.5 * pi, 2 * pi)
        .arc({corners.maxX(), corners.maxY()}, cardRadius, 0, pi / 2)
        .lineTo({neckRight, card.maxY()})
        .arc(hub, outerRadius, 1.5 * pi + neck, bandEnds)
        .arc(right, capRadius, bandEnds, cut + 2 * pi)
        .arc(right, capRadius, pi - cut, bandEnds - pi)
        .arc(hub, innerRadius, bandEnds, angleFrom(hub, mirrored))
        .arc(rightCorner, plateRadius, angleFrom(rightCorner, mirrored), pi / 2)
        .arc(leftCorner, plateRadius, pi / 2, angleFrom(leftCorner, crossing))
        .arc(hub, innerRadius, angleFrom(hub, crossing), bandBegins)
        .arc(left, capRadius, bandBegins - pi, cut)
        .closed();
}

std::vector<Rect> cover(Ends ends) {
    constexpr double strip = 8;
    const double widest = wheelRadius * std::abs(std::cos(bandBegins)) + capRadius;
    const double low = top - outerRadius;
    std::vector<Rect> rects{card};
    rects.push_back({middle - neckWidth / 2, card.maxY(), neckWidth, low + strip - card.maxY()});
    for (double y = low; y < top; y += strip) {
        const double high = std::min(y + strip, top);
        const double chord = std::sqrt(outerRadius * outerRadius - (top - high) * (top - high));
        const double half = std::min(chord, widest);
        rects.push_back({middle - half, y, 2 * half, high - y});
    }
    if (ends == Ends::round) {
        for (const double angle : {bandBegins, bandEnds}) {
            const Point cap = onWheel(wheelRadius, angle);
            const double half = std::sqrt(capRadius * capRadius - (top - cap.y) * (top - cap.y));
            rects.push_back({cap.x - half, top, 2 * half, cap.y + capRadius - top});
        }
    }
    return rects;
}

}  // namespace quibbits::DialShape
