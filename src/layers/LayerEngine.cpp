#include "layers/LayerEngine.h"

#include <algorithm>
#include <cassert>

#include "layers/Emission.h"
#include "layers/TransactionBatch.h"

namespace quibbits {

LayerEngine::LayerEngine(RunLoop& loop, std::uint64_t seed) : loop_(loop), seed_(seed) {}

LayerEngine::~LayerEngine() {
    assert(open_.empty());
}

LayerRef LayerEngine::makeLayer() {
    return LayerRef(new Layer(*this, nextId()));
}

LayerRef LayerEngine::makeLayer(LayerProperties values) {
    auto layer = makeLayer();
    layer->apply(std::move(values));
    return layer;
}

bool LayerEngine::actionsEnabled() const {
    return open_.empty() || open_.back()->actions_ == Actions::enabled;
}

Seconds LayerEngine::fadeDuration() const {
    return open_.empty() ? implicitDuration : open_.back()->duration_;
}

Transaction::Transaction(LayerEngine& engine, Settings settings)
    : engine_(engine), actions_(settings.actions), duration_(settings.duration) {
    if (settings.completion) {
        batch_ =
            std::make_shared<TransactionBatch>(engine.runLoop(), std::move(settings.completion));
    }
    engine_.open_.push_back(this);
}

Transaction::~Transaction() {
    std::erase(engine_.open_, this);
}

}  // namespace quibbits
