#pragma once
// What one panel shows: a root layer and the answers a backend needs to paint it. The backend asks
// `nextFrame` what changed since it last asked and draws that; then it sleeps until `nextWake`, or
// until `onChange` says that somebody has changed the tree.

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "layers/DeviceSpace.h"
#include "layers/Layer.h"

namespace quibbits {

class LayerTree {
public:
    explicit LayerTree(LayerEngine& engine);
    ~LayerTree();
    LayerTree(const LayerTree&) = delete;
    LayerTree& operator=(const LayerTree&) = delete;

    Layer& root() { return *root_; }
    const Layer& root() const { return *root_; }

    /// The panel's size in points and its device pixels per point. A change damages everything.
    void setSurface(Size points, double scale);
    Size surface() const;
    double scale() const;
    /// Seconds between two frames of the display; 1/60 unless told.
    void setFrameInterval(Seconds interval);

    /// What must be painted at the instant to bring the surface up to date: few rectangles that do
    /// not overlap, empty when nothing drawn differs. Each is to be cleared and drawn by a painter
    /// with the same instant. Asking counts as painting.
    std::vector<PixelRect> nextFrame(Instant now);
    /// The earliest instant after now at which the drawn result may differ, or nothing.
    std::optional<Instant> nextWake(Instant now);
    /// Makes the next frame paint everything.
    void damageAll();

    /// Somebody changed the tree: ask again. Called at most once until the next nextFrame, from
    /// inside the change, so the listener plans a frame for later and does not ask at once.
    std::function<void()> onChange;

    struct State;
    /// For a painter: the tree as it was presented by the last nextFrame.
    const State& state() const { return *state_; }

private:
    friend class Layer;
    void noticeChange();
    LayerEngine& engine_;
    LayerRef root_;
    std::unique_ptr<State> state_;
};

}  // namespace quibbits
