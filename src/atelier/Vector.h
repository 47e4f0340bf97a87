// Vectors, matrices and placed frames for the models.
//
// Lengths are sprite pixels: x to the right, y up, z towards the viewer (in a creature's own frame,
// out of its nose). Angles are degrees.
#pragma once

#include <cmath>
#include <numbers>

namespace quibbits::atelier {

constexpr double fullTurn = 2 * std::numbers::pi;  // in radians, for phases

constexpr double radians(double degrees) {
    return degrees * std::numbers::pi / 180;
}
constexpr double degrees(double radians) {
    return radians * 180 / std::numbers::pi;
}

struct Vec3 {
    double x = 0;
    double y = 0;
    double z = 0;
};

constexpr Vec3 operator+(Vec3 a, Vec3 b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
constexpr Vec3 operator-(Vec3 a, Vec3 b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
constexpr Vec3 operator*(Vec3 a, double s) {
    return {a.x * s, a.y * s, a.z * s};
}
constexpr double dot(Vec3 a, Vec3 b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
constexpr Vec3 cross(Vec3 a, Vec3 b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(Vec3 a) {
    return std::sqrt(dot(a, a));
}
inline Vec3 normalised(Vec3 a) {
    const double size = length(a);
    return size > 1e-12 ? a * (1 / size) : a;
}

/// A linear map, by the images of the three axes.
struct Mat3 {
    Vec3 x{1, 0, 0};
    Vec3 y{0, 1, 0};
    Vec3 z{0, 0, 1};
};

constexpr Vec3 operator*(const Mat3& m, Vec3 v) {
    return m.x * v.x + m.y * v.y + m.z * v.z;
}
constexpr Mat3 operator*(const Mat3& a, const Mat3& b) {
    return {a * b.x, a * b.y, a * b.z};
}

constexpr Mat3 transposed(const Mat3& m) {
    return {{m.x.x, m.y.x, m.z.x}, {m.x.y, m.y.y, m.z.y}, {m.x.z, m.y.z, m.z.z}};
}

constexpr double determinant(const Mat3& m) {
    return dot(m.x, cross(m.y, m.z));
}

constexpr Mat3 inverse(const Mat3& m) {
    const double scale = 1 / determinant(m);
    return transposed({cross(m.y, m.z) * scale, cross(m.z, m.x) * scale, cross(m.x, m.y) * scale});
}

/// A place with its own axes. The operations build a new frame inside this one, so a chain of them
/// reads from the body outwards: `hip.moved({0, 5, 1}).pitched(10)`.
struct Frame {
    Mat3 axes;
    Vec3 origin;

    [[nodiscard]] Vec3 at(Vec3 local) const { return axes * local + origin; }
    [[nodiscard]] Frame moved(Vec3 by) const { return {axes, at(by)}; }
    [[nodiscard]] Frame scaled(Vec3 by) const {
        return {{axes.x * by.x, axes.y * by.y, axes.z * by.z}, origin};
    }
    /// Turns the top towards the front: a nod.
    [[nodiscard]] Frame pitched(double angle) const {
        const double c = std::cos(radians(angle));
        const double s = std::sin(radians(angle));
        return {axes * Mat3{{1, 0, 0}, {0, c, s}, {0, -s, c}}, origin};
    }
    /// Turns the front towards the right: a shake of the head.
    [[nodiscard]] Frame yawed(double angle) const {
        const double c = std::cos(radians(angle));
        const double s = std::sin(radians(angle));
        return {axes * Mat3{{c, 0, -s}, {0, 1, 0}, {s, 0, c}}, origin};
    }
    /// Turns the top towards the left: a tilt of the head.
    [[nodiscard]] Frame rolled(double angle) const {
        const double c = std::cos(radians(angle));
        const double s = std::sin(radians(angle));
        return {axes * Mat3{{c, s, 0}, {-s, c, 0}, {0, 0, 1}}, origin};
    }
    /// The same frame on whole pixels of the picture, so that what hangs on it moves as one.
    [[nodiscard]] Frame snapped() const {
        return {axes, {std::floor(origin.x + 0.5), std::floor(origin.y + 0.5), origin.z}};
    }
};

}  // namespace quibbits::atelier
