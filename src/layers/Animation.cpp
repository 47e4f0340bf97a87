#include "layers/Animation.h"

#include <algorithm>
#include <cmath>

namespace quibbits {

namespace {

/// One coordinate of a cubic curve from 0 to 1 with two control values.
double cubic(double c1, double c2, double t) {
    const double u = 1 - t;
    return 3 * u * u * t * c1 + 3 * u * t * t * c2 + t * t * t;
}

}  // namespace

double TimingFunction::at(double share) const {
    const auto [x1, y1, x2, y2] = control;
    if (share <= 0 || share >= 1 || (x1 == y1 && x2 == y2)) return std::clamp(share, 0.0, 1.0);
    double low = 0;
    double high = 1;
    double t = share;
    for (int i = 0; i < 60 && high - low > 1e-14; ++i) {
        const double x = cubic(x1, x2, t);
        (x < share ? low : high) = t;
        const double slope =
            3 * (1 - t) * (1 - t) * x1 + 6 * (1 - t) * t * (x2 - x1) + 3 * t * t * (1 - x2);
        const double step = slope > 1e-6 ? t - (x - share) / slope : low;
        const double next = step > low && step < high ? step : (low + high) / 2;
        if (std::abs(next - t) < 1e-14) break;
        t = next;
    }
    return cubic(y1, y2, t);
}

Seconds AnimationTiming::total() const {
    const Seconds run = duration * (autoreverses ? 2 : 1);
    if (!(run > 0) || !(repeatCount > 0)) return beginDelay;
    if (!(speed > 0)) return forever;
    return beginDelay + run * repeatCount / speed;
}

}  // namespace quibbits
