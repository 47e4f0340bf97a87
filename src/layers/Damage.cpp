#include "layers/Damage.h"

#include <cstddef>
#include <limits>

namespace quibbits {

namespace {

constexpr std::size_t mostRects = 8;

}  // namespace

/// Whatever it meets is taken into it, which may make it meet others.
void Damage::add(PixelRect rect) {
    if (rect.isEmpty()) return;
    for (std::size_t i = 0; i < rects_.size();) {
        if (!rects_[i].intersects(rect)) {
            ++i;
            continue;
        }
        rect = rect.united(rects_[i]);
        rects_[i] = rects_.back();
        rects_.pop_back();
        i = 0;
    }
    rects_.push_back(rect);
    if (rects_.size() > mostRects) joinCheapest();
}

/// Unites the two that waste the fewest pixels.
void Damage::joinCheapest() {
    std::size_t one = 0;
    std::size_t other = 1;
    long least = std::numeric_limits<long>::max();
    for (std::size_t i = 0; i < rects_.size(); ++i) {
        for (std::size_t k = i + 1; k < rects_.size(); ++k) {
            const long wasted =
                rects_[i].united(rects_[k]).area() - rects_[i].area() - rects_[k].area();
            if (wasted >= least) continue;
            least = wasted;
            one = i;
            other = k;
        }
    }
    const PixelRect both = rects_[one].united(rects_[other]);
    rects_.erase(rects_.begin() + static_cast<std::ptrdiff_t>(other));
    rects_.erase(rects_.begin() + static_cast<std::ptrdiff_t>(one));
    add(both);
}

std::vector<PixelRect> Damage::within(PixelRect surface) const {
    std::vector<PixelRect> visible;
    for (const auto& rect : rects_) {
        const auto part = rect.intersected(surface);
        if (!part.isEmpty()) visible.push_back(part);
    }
    return visible;
}

}  // namespace quibbits
