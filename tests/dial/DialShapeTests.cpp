#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "dial/DialShape.h"
#include "layers/PathMeasure.h"

namespace quibbits {
namespace {

/// How far a point is outside a rounded rectangle; negative inside.
double outside(const Rect& box, double radius, Point p) {
    const double dx = std::abs(p.x - box.midX()) - box.width / 2 + radius;
    const double dy = std::abs(p.y - box.midY()) - box.height / 2 + radius;
    return std::hypot(std::max(dx, 0.0), std::max(dy, 0.0)) + std::min(std::max(dx, dy), 0.0) -
           radius;
}

/// How far a point is outside the band with its round ends.
double outsideBand(Point p, DialShape::Ends ends) {
    const Point hub{158, 272};
    const double begin = 190.8 * std::numbers::pi / 180;
    double angle = std::atan2(p.y - hub.y, p.x - hub.x);
    if (angle < 0) angle += 2 * std::numbers::pi;
    if (ends == DialShape::Ends::cut && p.y > hub.y) return p.y - hub.y;
    if (angle >= begin && angle <= 3 * std::numbers::pi - begin) {
        return std::abs(distance(p, hub) - 114) - 32;
    }
    const Point end{hub.x + 114 * std::cos(begin), hub.y + 114 * std::sin(begin)};
    const Point otherEnd{2 * hub.x - end.x, end.y};
    return std::min(distance(p, end), distance(p, otherEnd)) - 32;
}

double outsideOfAll(Point p, DialShape::Ends ends) {
    return std::min({outsideBand(p, ends), outside({84, 186, 148, 48}, 20, p),
                     outside({30, 6, 256, 102}, 18, p), outside({128, 98, 60, 80}, 0, p)});
}

/// Whether the line goes around the point, and around it once only.
bool goesAround(const std::vector<Point>& line, Point p) {
    double turned = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const Vector a = line[i] - p;
        const Vector b = line[(i + 1) % line.size()] - p;
        turned += std::atan2(a.dx * b.dy - a.dy * b.dx, dot(a, b));
    }
    return std::lround(turned / (2 * std::numbers::pi)) == 1;
}

std::vector<Point> outlinePoints(DialShape::Ends ends) {
    std::vector<Point> line;
    constexpr int count = 1500;
    const PathMeasure outline(DialShape::outline(ends));
    for (int i = 0; i < count; ++i) line.push_back(outline.at(static_cast<double>(i) / count));
    return line;
}

TEST(TheDialsOutline, IsOneLineAroundWheelPlateCardAndNeckTogether) {
    for (const auto ends : {DialShape::Ends::cut, DialShape::Ends::round}) {
        const auto line = outlinePoints(ends);
        int inside = 0;
        for (double x = 0.5; x < 316; x += 4) {
            for (double y = 0.5; y < 290; y += 4) {
                const double off = outsideOfAll({x, y}, ends);
                if (std::abs(off) < 0.5) continue;  // the line is made of curves, nearly round
                ASSERT_EQ(goesAround(line, {x, y}), off < 0) << x << ", " << y;
                inside += off < 0;
            }
        }
        EXPECT_GT(inside, 2000);
    }
}

TEST(TheDialsOutline, StaysInTheViewAndUnderItsCover) {
    for (const auto ends : {DialShape::Ends::cut, DialShape::Ends::round}) {
        const auto cover = DialShape::cover(ends);
        double covered = 0;
        for (const Rect& r : cover) covered += r.width * r.height;
        EXPECT_LT(covered, 0.8 * 316 * 272) << "the corners beside the shape are not its own";
        double highest = 0;
        for (const Point p : outlinePoints(ends)) {
            EXPECT_GE(p.y, 6);
            highest = std::max(highest, p.y);
            EXPECT_TRUE(std::ranges::any_of(
                cover, [&](const Rect& r) { return r.inset(-0.05).contains(p); }))
                << p.x << ", " << p.y;
        }
        EXPECT_NEAR(highest, ends == DialShape::Ends::cut ? 272 : 282.6, 0.1);
    }
}

TEST(TheDialsSlots, LieEvenlyOnTheArcFromLeftToRight) {
    EXPECT_NEAR(DialShape::slotCenter(0).x, 158 + 114 * std::cos(201.6 * std::numbers::pi / 180),
                1e-9);
    EXPECT_NEAR(DialShape::slotCenter(0).y, 272 + 114 * std::sin(201.6 * std::numbers::pi / 180),
                1e-9);
    for (int i = 0; i < 6; ++i) {
        const Point mirrored = DialShape::slotCenter(5 - i);
        EXPECT_NEAR(DialShape::slotCenter(i).x, 316 - mirrored.x, 1e-9);
        EXPECT_NEAR(DialShape::slotCenter(i).y, mirrored.y, 1e-9);
    }
}

TEST(TheDialsSlots, AreHitAFewPointsBesideTheirDiscsToo) {
    for (int i = 0; i < 6; ++i) {
        const Point center = DialShape::slotCenter(i);
        const Vector outwards = (center - Point{158, 272}) * (1 / 114.0);
        EXPECT_EQ(DialShape::slot(center), i);
        EXPECT_EQ(DialShape::slot(center + outwards * 26.99), i);
        EXPECT_EQ(DialShape::slot(center + outwards * 27.01), std::nullopt);
    }
    EXPECT_EQ(DialShape::slot(midpoint(DialShape::slotCenter(2), DialShape::slotCenter(3))), 2);
    EXPECT_EQ(DialShape::slot({158, 210}), std::nullopt) << "the plate";
}

}  // namespace
}  // namespace quibbits
