#include "layers/LayerTree.h"

#include <cmath>

#include "layers/AnimationList.h"
#include "layers/DisplayTree.h"
#include "layers/Emission.h"
#include "layers/LayerEngine.h"
#include "layers/TreeSync.h"
#include "layers/WakeSearch.h"

namespace quibbits {

LayerTree::LayerTree(LayerEngine& engine)
    : engine_(engine), root_(engine.makeLayer()), state_(std::make_unique<State>()) {
    root_->rootOf_ = this;
    state_->root.id = root_->id_;
    setSurface({}, 1);
}

LayerTree::~LayerTree() {
    root_->rootOf_ = nullptr;
}

void LayerTree::setSurface(Size points, double scale) {
    state_->surface = points;
    state_->scale = scale;
    const Transaction still(engine_, Transaction::withoutActions());
    root_->change([&](LayerProperties& l) {
        l.bounds = {0, 0, points.width, points.height};
        l.anchorPoint = {0, 0};
        l.position = {0, 0};
    });
    damageAll();
}

Size LayerTree::surface() const {
    return state_->surface;
}

double LayerTree::scale() const {
    return state_->scale;
}

void LayerTree::setFrameInterval(Seconds interval) {
    state_->frameInterval = interval;
}

std::vector<PixelRect> LayerTree::nextFrame(Instant now) {
    state_->changeNoticed = false;
    if (state_->pixels().isEmpty()) return {};
    if (std::exchange(state_->damagedAll, false)) {
        DrawnLayer fresh;
        fresh.id = root_->id_;
        state_->root = std::move(fresh);
        TreeSync(*state_, now).run(*root_);
        return {state_->pixels()};
    }
    return TreeSync(*state_, now).run(*root_).within(state_->pixels());
}

std::optional<Instant> LayerTree::nextWake(Instant now) {
    if (state_->pixels().isEmpty()) return std::nullopt;
    if (root_->changes_ != state_->root.changes || state_->damagedAll)
        return state_->frameAfter(now);
    const Instant wake = WakeSearch(*state_, now).run(*root_);
    return wake < forever ? std::optional(wake) : std::nullopt;
}

void LayerTree::damageAll() {
    state_->damagedAll = true;
    noticeChange();
}

void LayerTree::noticeChange() {
    if (!onChange || std::exchange(state_->changeNoticed, true)) return;
    const auto listener = onChange;  // it may be replaced from inside
    listener();
}

Instant LayerTree::State::frameAfter(Instant now) const {
    constexpr double clockError = 1e-6;  // in frames
    return (std::floor(now / frameInterval + clockError) + 1) * frameInterval;
}

double LayerTree::State::stepSize(double artPixel) const {
    return std::max(1.0, std::round(artPixel * scale)) / scale;
}

}  // namespace quibbits
