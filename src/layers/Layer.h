#pragma once
// A node of the retained tree that a panel shows: where it is, what it shows, its sublayers and the
// animations that run on it. Owned by its parent and by whoever holds a reference; made by a
// LayerEngine, which it must not outlive. Coordinates have y upwards.
//
// Model values change only through `change`, so that the engine sees every change: it marks what
// must be drawn anew and, unless a Transaction has switched actions off, lets the new value fade
// in. Presentation values, what is seen at an instant, are computed on demand and never written
// back.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "layers/Animation.h"
#include "layers/Content.h"
#include "platform/RunLoop.h"

namespace quibbits {

class AnimationList;
class Emission;
class Layer;
class LayerEngine;
class LayerTree;
struct Appearance;
struct RunningAnimation;
using LayerRef = std::shared_ptr<Layer>;

/// Scaled, then turned, then moved, all around the anchor point.
struct Transform {
    double scaleX = 1;
    double scaleY = 1;
    double rotation = 0;  // radians, counter-clockwise
    Vector translation;
    bool operator==(const Transform&) const = default;

    static Transform scaled(double x, double y) { return {.scaleX = x, .scaleY = y}; }
    /// Turned over from left to right.
    static Transform mirrored() { return scaled(-1, 1); }
};

struct Shadow {
    Color color = Color::black();
    Vector offset;
    double radius = 3;   // points of blur
    double opacity = 0;  // 0 casts none
    bool operator==(const Shadow&) const = default;
};

/// The model values of a layer.
struct LayerProperties {
    Rect bounds;
    Point position;               // of the anchor point, in the parent's coordinates
    Point anchorPoint{0.5, 0.5};  // in unit coordinates of the bounds
    Transform transform;
    double opacity = 1;
    bool hidden = false;
    Content content;
    Rect contentsRect{0, 0, 1, 1};  // the part of a picture that shows; y from the top
    Color background;
    double cornerRadius = 0;
    double borderWidth = 0;
    Color borderColor;
    Shadow shadow;
    bool masksToBounds = false;
    /// Above 0 on the root of a body made of pixel art: the size of an art pixel in points. While
    /// such a layer moves slowly, it and all below it are drawn on that grid and in few steps.
    double artPixel = 0;
    bool operator==(const LayerProperties&) const = default;
};

class Layer : public std::enable_shared_from_this<Layer> {
public:
    Layer(const Layer&) = delete;
    Layer& operator=(const Layer&) = delete;
    ~Layer();

    const LayerProperties& model() const { return model_; }
    /// Changes model values; the one way to do so. The function gets the values to change.
    template <typename F>
    void change(F edit) {
        LayerProperties next = model_;
        edit(next);
        apply(std::move(next));
    }
    void setPosition(Point p) {
        change([&](auto& l) { l.position = p; });
    }
    /// Bounds of the rectangle's size and a position that puts the layer there, as long as its
    /// transform is plain.
    void setFrame(Rect r);
    void setOpacity(double o) {
        change([&](auto& l) { l.opacity = o; });
    }
    void setHidden(bool h) {
        change([&](auto& l) { l.hidden = h; });
    }
    void setTransform(Transform t) {
        change([&](auto& l) { l.transform = t; });
    }
    void setContent(Content c) {
        change([&](auto& l) { l.content = std::move(c); });
    }

    /// What is seen at the instant: the model with every running animation applied, the layer's own
    /// values only, in the order in which they were added.
    LayerProperties presentation(Instant now) const;
    /// The same, at this moment.
    LayerProperties presentation() const;
    /// The rectangle that the bounds take in the parent's coordinates, by the given values.
    static Rect frameOf(const LayerProperties& values);
    /// frameOf the model.
    Rect frame() const { return frameOf(model_); }

    // The tree. A layer has at most one parent; adding it elsewhere moves it.
    Layer* superlayer() const { return superlayer_; }
    const std::vector<LayerRef>& sublayers() const { return sublayers_; }
    void addSublayer(LayerRef layer);                        // on top
    void insertSublayer(LayerRef layer, std::size_t index);  // 0 is the lowest
    void removeFromSuperlayer();
    void removeAllSublayers();
    /// A layer whose drawn opacity masks this one and all below it, in this layer's coordinates.
    const LayerRef& mask() const { return mask_; }
    void setMask(LayerRef mask);

    // Animations. One key holds one animation: adding under a key replaces what was there.
    using AnimationEnd = std::function<void(bool finished)>;
    /// Starts an animation now. `end` runs once from the run loop: with true at the exact instant
    /// of its end, painted or not, or with false after it was removed or replaced.
    void add(Animation animation, std::string_view key, AnimationEnd end = {});
    void add(AnimationGroup group, std::string_view key, AnimationEnd end = {});
    void removeAnimation(std::string_view key);
    void removeAllAnimations();
    /// The animation under the key, while it is on the layer. A group gives its first one.
    const Animation* animation(std::string_view key) const;
    bool hasAnimations() const;

    LayerEngine& engine() const { return engine_; }

private:
    friend class LayerEngine;
    friend class LayerTree;
    friend class TreeSync;
    friend class WakeSearch;
    friend class Reach;
    Layer(LayerEngine& engine, std::uint64_t id);

    void apply(LayerProperties next);
    void fade(const Appearance& before, const Appearance& seen);
    bool fadesImplicitly() const;
    void start(RunningAnimation animation);
    void finish(std::uint64_t id);
    void release(RunningAnimation animation);

    LayerTree* tree() const;
    std::uint64_t emissionSeed() const;
    void markJoined(Instant now);
    /// Something drawn may differ: the way down from the root is marked for the next frame.
    void touch();
    void touchSublayers();

    LayerEngine& engine_;
    const std::uint64_t id_;
    LayerProperties model_;
    Layer* superlayer_ = nullptr;
    LayerTree* rootOf_ = nullptr;  // set on the root of a tree
    std::vector<LayerRef> sublayers_;
    LayerRef mask_;
    std::unique_ptr<AnimationList> animations_;  // none until the first is added
    std::unique_ptr<Emission> emission_;         // while the content is an emitter
    std::uint64_t contentRevision_ = 1;
    Instant joined_;  // when it came into a tree

    // How often it has changed. A tree remembers which count it has seen.
    std::uint64_t changes_ = 1;            // of the layer itself and all below it
    std::uint64_t sublayersRevision_ = 1;  // of the list of its sublayers
};

}  // namespace quibbits
