#pragma once
// The values of a layer that animations can change, without its content: cheap to copy, so that a
// frame can be computed for many layers.

#include <span>

#include "layers/Layer.h"

namespace quibbits {

struct Appearance {
    Rect bounds;
    Point position;
    Transform transform;
    double opacity = 1;
    Rect contentsRect{0, 0, 1, 1};
    Color background;
    double cornerRadius = 0;
    double borderWidth = 0;
    Color borderColor;
    Shadow shadow;
    // Of a shape; at their defaults for other content.
    double strokeStart = 0;
    double strokeEnd = 1;
    double lineWidth = 1;
    Color stroke;
    Color fill;
    bool operator==(const Appearance&) const = default;

    static Appearance of(const LayerProperties& values);
    void writeTo(LayerProperties& values) const;
    AnimatedValue value(KeyPath path) const;
    /// A value of another type than the key path's is ignored.
    void set(KeyPath path, const AnimatedValue& value);

    /// The key paths whose change fades in by itself. Together they cover every value that can.
    static std::span<const KeyPath> fading();
};

/// The point a share of the way from one value to another. Values of two types give the second.
AnimatedValue mixed(const AnimatedValue& from, const AnimatedValue& to, double share);
/// The sum, part by part. Values of two types give the first.
AnimatedValue sum(const AnimatedValue& a, const AnimatedValue& b);

}  // namespace quibbits
