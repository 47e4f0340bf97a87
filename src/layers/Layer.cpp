#include "layers/Layer.h"

#include <algorithm>
#include <cassert>

#include "layers/AnimationList.h"
#include "layers/DisplayTree.h"
#include "layers/Emission.h"
#include "layers/LayerEngine.h"
#include "layers/LayerTree.h"
#include "layers/TransactionBatch.h"

namespace quibbits {

Layer::Layer(LayerEngine& engine, std::uint64_t id)
    : engine_(engine), id_(id), joined_(engine.now()) {}

Layer::~Layer() {
    removeAllAnimations();
    for (const auto& layer : sublayers_) layer->superlayer_ = nullptr;
    if (mask_) mask_->superlayer_ = nullptr;
}

void Layer::setFrame(Rect r) {
    change([&](LayerProperties& l) {
        l.bounds.width = r.width;
        l.bounds.height = r.height;
        l.position = {r.x + l.anchorPoint.x * r.width, r.y + l.anchorPoint.y * r.height};
    });
}

Rect Layer::frameOf(const LayerProperties& values) {
    const Affine map = toParent(Appearance::of(values), values.anchorPoint);
    return map.apply(values.bounds);
}

LayerProperties Layer::presentation(Instant now) const {
    LayerProperties values = model_;
    if (!hasAnimations()) return values;
    Appearance seen = Appearance::of(model_);
    animations_->apply(seen, {now, now});
    seen.writeTo(values);
    return values;
}

LayerProperties Layer::presentation() const {
    return presentation(engine_.now());
}

void Layer::apply(LayerProperties next) {
    const bool sameContent = next.content == model_.content;
    if (sameContent && next == model_) return;
    const Appearance before = Appearance::of(model_);
    Appearance seen = before;
    if (hasAnimations()) animations_->apply(seen, {engine_.now(), engine_.now()});
    model_ = std::move(next);
    if (!sameContent) {
        ++contentRevision_;
        Emission::record(emission_, std::get_if<Emitter>(&model_.content), engine_.now());
    }
    touch();
    if (fadesImplicitly()) fade(before, seen);
}

void Layer::addSublayer(LayerRef layer) {
    insertSublayer(std::move(layer), sublayers_.size());
}

void Layer::insertSublayer(LayerRef layer, std::size_t index) {
    assert(layer && layer.get() != this);
    const bool wasSeen = layer->tree() != nullptr;
    layer->removeFromSuperlayer();
    index = std::min(index, sublayers_.size());
    const auto place = sublayers_.begin() + static_cast<std::ptrdiff_t>(index);
    Layer& child = **sublayers_.insert(place, std::move(layer));
    child.superlayer_ = this;
    if (!wasSeen && tree()) child.markJoined(engine_.now());
    touchSublayers();
}

void Layer::removeFromSuperlayer() {
    if (!superlayer_) return;
    const LayerRef self = shared_from_this();  // the parent's reference may be the last one
    Layer& parent = *std::exchange(superlayer_, nullptr);
    if (parent.mask_ == self) {
        parent.mask_ = nullptr;
    } else {
        std::erase(parent.sublayers_, self);
    }
    parent.touchSublayers();
}

void Layer::removeAllSublayers() {
    if (sublayers_.empty()) return;
    const auto removed = std::exchange(sublayers_, {});
    for (const auto& layer : removed) layer->superlayer_ = nullptr;
    touchSublayers();
}

void Layer::setMask(LayerRef mask) {
    if (mask == mask_) return;
    if (mask) mask->removeFromSuperlayer();
    if (mask_) mask_->superlayer_ = nullptr;
    mask_ = std::move(mask);
    if (mask_) {
        mask_->superlayer_ = this;
        if (tree()) mask_->markJoined(engine_.now());
    }
    touchSublayers();
}

LayerTree* Layer::tree() const {
    const Layer* layer = this;
    while (layer->superlayer_) layer = layer->superlayer_;
    return layer->rootOf_;
}

std::uint64_t Layer::emissionSeed() const {
    return (engine_.seed_ << 32) + id_;
}

void Layer::markJoined(Instant now) {
    joined_ = now;
    for (const auto& layer : sublayers_) layer->markJoined(now);
    if (mask_) mask_->markJoined(now);
}

void Layer::touch() {
    Layer* layer = this;
    for (; layer->superlayer_; layer = layer->superlayer_) ++layer->changes_;
    ++layer->changes_;
    if (layer->rootOf_) layer->rootOf_->noticeChange();
}

void Layer::touchSublayers() {
    ++sublayersRevision_;
    touch();
}

}  // namespace quibbits
