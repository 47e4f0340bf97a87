#pragma once
// The curves that scores are made of.

#include <algorithm>

namespace quibbits {

/// The cubic smoothstep between a and b: 0 on the side of a, 1 on the side of b. With a below b the
/// value rises, with a above b it falls.
inline double smoothstep(double v, double a, double b) {
    const double t = std::clamp((v - a) / (b - a), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}
/// 0 at or below a, 1 at or above b.
inline double rise(double v, double a, double b) {
    return smoothstep(v, a, b);
}
/// 1 at or below b, 0 at or above a.
inline double fall(double v, double a, double b) {
    return smoothstep(v, a, b);
}

inline double flag(bool x) {
    return x ? 1.0 : 0.0;
}

}  // namespace quibbits
