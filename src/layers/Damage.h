#pragma once
// Collects the rectangles that must be painted and keeps them few and apart.

#include <vector>

#include "layers/DeviceSpace.h"

namespace quibbits {

class Damage {
public:
    void add(PixelRect rect);
    bool isEmpty() const { return rects_.empty(); }
    /// The part on the surface; no two rectangles share a pixel.
    std::vector<PixelRect> within(PixelRect surface) const;

private:
    void joinCheapest();
    std::vector<PixelRect> rects_;
};

}  // namespace quibbits
