// Adding, ending and removing a layer's animations, and the fades that changes start by themselves.

#include <algorithm>

#include "layers/AnimationList.h"
#include "layers/Emission.h"
#include "layers/Layer.h"
#include "layers/LayerEngine.h"
#include "layers/LayerTree.h"
#include "layers/TransactionBatch.h"

namespace quibbits {

namespace {

/// A layer that came into the tree less than a frame of the display ago cannot have been seen, so
/// what is set on it then belongs to its making.
constexpr Seconds unseenFor = 1.0 / 60;

std::string fadeKey(KeyPath path) {
    return "fade " + std::to_string(static_cast<int>(path));
}

}  // namespace

bool Layer::hasAnimations() const {
    return animations_ && !animations_->isEmpty();
}

void Layer::add(Animation animation, std::string_view key, AnimationEnd end) {
    RunningAnimation running;
    running.key = key;
    running.onEnd = std::move(end);
    running.parts.emplace_back(std::move(animation));
    start(std::move(running));
}

void Layer::add(AnimationGroup group, std::string_view key, AnimationEnd end) {
    RunningAnimation running;
    running.key = key;
    running.onEnd = std::move(end);
    running.group = group.timing;
    for (auto& part : group.animations) running.parts.emplace_back(std::move(part));
    start(std::move(running));
}

void Layer::start(RunningAnimation running) {
    removeAnimation(running.key);
    running.id = engine_.nextId();
    running.start = engine_.now();
    const Seconds total = running.timing().total();
    running.end = running.start + total;
    for (const auto* open : engine_.open_) {
        if (open->batch_) running.batches.push_back(open->batch_);
    }
    if (total < forever) {
        running.timer = engine_.runLoop().timer(total, [self = weak_from_this(), id = running.id] {
            if (const auto layer = self.lock()) layer->finish(id);
        });
    }
    if (!animations_) animations_ = std::make_unique<AnimationList>();
    animations_->add(std::move(running));
    touch();
}

/// At an animation's end: what stays for its fill mode stays, and whoever waits for it is told.
void Layer::finish(std::uint64_t id) {
    auto* running = animations_ ? animations_->find(id) : nullptr;
    if (!running) return;
    const AnimationEnd end = std::exchange(running->onEnd, nullptr);
    const auto batches = std::exchange(running->batches, {});
    if (running->timing().removedOnCompletion) {
        animations_->take(id);
        touch();
    }
    if (end) end(true);
}

/// An animation taken out before its end.
void Layer::release(RunningAnimation running) {
    running.timer.cancel();
    if (!running.onEnd) return;
    engine_.runLoop().post([end = std::move(running.onEnd)] { end(false); });
}

void Layer::removeAnimation(std::string_view key) {
    auto taken = animations_ ? animations_->take(key) : std::nullopt;
    if (!taken) return;
    touch();
    release(std::move(*taken));
}

void Layer::removeAllAnimations() {
    if (!hasAnimations()) return;
    auto taken = animations_->takeAll();
    touch();
    for (auto& running : taken) release(std::move(running));
}

const Animation* Layer::animation(std::string_view key) const {
    const auto* running = animations_ ? animations_->find(key) : nullptr;
    return running && !running->parts.empty() ? &running->parts.front().animation() : nullptr;
}

bool Layer::fadesImplicitly() const {
    return engine_.actionsEnabled() && engine_.fadeDuration() > 0 && tree() &&
           engine_.now() - joined_ >= unseenFor;
}

void Layer::fade(const Appearance& before, const Appearance& seen) {
    const Appearance after = Appearance::of(model_);
    for (const KeyPath path : Appearance::fading()) {
        if (before.value(path) == after.value(path)) continue;
        add(Animation{.keyPath = path,
                      .motion = BasicMotion{.from = seen.value(path)},
                      .curve = TimingFunction::defaultCurve(),
                      .timing = {.duration = engine_.fadeDuration()}},
            fadeKey(path));
    }
}

}  // namespace quibbits
