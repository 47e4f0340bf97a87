#pragma once
// What a painter reads: the tree as the last frame presented it, in device pixels, with everything
// rounded to what is really drawn. Two layers with equal `Drawn` are drawn with equal pixels; that
// is what damage is computed from, so a painter uses nothing else.

#include <memory>
#include <optional>
#include <vector>

#include "layers/Appearance.h"
#include "layers/DeviceSpace.h"
#include "layers/LayerTree.h"

namespace quibbits {

/// Joins longer than this many half line widths are cut off.
constexpr double miterLimit = 4;
/// Letters may reach this far out of their layer's bounds, in points.
constexpr double textOverhang = 2;

/// A pixel picture that is drawn upright from whole pixels to whole pixels.
struct SpritePlacement {
    PixelRect source;  // in the picture
    PixelRect target;
    bool mirrored = false;  // left to right
    bool flipped = false;   // upside down
    bool operator==(const SpritePlacement&) const = default;
};

struct DrawnParticle {
    std::size_t cell = 0;
    PixelRect target;
    int opacity = 255;
    bool operator==(const DrawnParticle&) const = default;
};

struct Drawn {
    Affine toDevice;    // from the layer's coordinates; unset where only a sprite is drawn
    Appearance values;  // without position, transform and opacity, which the others tell
    bool masksToBounds = false;
    std::shared_ptr<const Content> content;
    std::optional<SpritePlacement> sprite;
    std::vector<DrawnParticle> particles;
    bool operator==(const Drawn&) const = default;

    bool hasShadow() const { return values.shadow.opacity > 0 && values.shadow.color.alpha > 0; }
    bool hasBorder() const { return values.borderWidth > 0 && values.borderColor.alpha > 0; }
};

struct DrawnLayer {
    std::uint64_t id = 0;
    Drawn drawn;
    int opacity = 255;        // of it and all below it, put together
    PixelRect extent;         // what the layer itself may touch
    PixelRect subtreeExtent;  // with all below it; empty for a layer that is out of sight
    PixelRect clip;           // what it and its sublayers are confined to
    std::unique_ptr<DrawnLayer> mask;
    std::vector<std::unique_ptr<DrawnLayer>> sublayers;

    // What the next frame starts from.
    Affine exact;  // to device pixels, before rounding
    // The layer's counts when this tree last looked; what has a higher one now is looked at anew,
    // also where the layer was in another tree meanwhile.
    std::uint64_t changes = 0;
    std::uint64_t sublayersRevision = 0;
    std::uint64_t contentRevision = 0;
    bool isNew = true;
    bool isCollapsed = true;  // its sublayers are not looked at, for it is out of sight
    bool isActive = false;    // it, or something below it, changes with time
};

/// The map from a layer's own coordinates to its parent's.
Affine toParent(const Appearance& values, Point anchorPoint);

/// An opacity from 0 to 1 in steps that can be told apart.
int drawnOpacity(double opacity);
/// What is drawn of a layer with the given presented values. The picture content is taken from
/// `content`, the rest of the properties from the model.
Drawn drawnOf(const Appearance& seen, const LayerProperties& model, const Affine& toDevice,
              std::shared_ptr<const Content> content);
/// Puts particles on the device's pixels.
DrawnParticle drawnParticle(const EmitterCell& cell, std::size_t index, Point place, double opacity,
                            const Affine& toDevice);
/// What the layer itself may touch when it is drawn.
PixelRect extentOf(const Drawn& drawn, const Affine& toDevice);

struct LayerTree::State {
    DrawnLayer root;
    Size surface;
    double scale = 1;
    Seconds frameInterval = 1.0 / 60;
    bool damagedAll = true;
    bool changeNoticed = false;

    PixelRect pixels() const {
        return {0, 0, static_cast<int>(std::lround(surface.width * scale)),
                static_cast<int>(std::lround(surface.height * scale))};
    }
    /// From points, y upwards, to device pixels, y downwards.
    Affine flip() const { return {scale, 0, 0, -scale, 0, static_cast<double>(pixels().height)}; }
    /// The display's next frame after an instant.
    Instant frameAfter(Instant now) const;
    /// The art pixel that a body steps by: a whole number of device pixels, given in points.
    double stepSize(double artPixel) const;
};

}  // namespace quibbits
