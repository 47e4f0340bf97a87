#pragma once
// Looks on while a creature lives: which animations its body plays.

#include <set>
#include <string>

#include "body/Pixels.h"
#include "support/LivingCreature.h"

namespace quibbits {

class Watcher {
public:
    explicit Watcher(LivingCreature& life) : life_(life) {}
    void lookOn(Seconds seconds) {
        for (int i = 0; i < std::lround(seconds / step); ++i) {
            look();
            life_.advance(step);
        }
    }
    void look() {
        const auto& picture = std::get<Picture>(life_.pet().sprite().model().content);
        for (const auto& [name, anim] : life_.creature().a().all) {
            if (anim.image == picture.image) played.insert(name);
        }
        for (const LayerRef& layer : life_.pet().node().sublayers()) {
            const auto* source = std::get_if<Emitter>(&layer->model().content);
            sawHearts = sawHearts || (source && source->cells.front().image == Pixels::heart());
        }
    }
    std::set<std::string> played;
    bool sawHearts = false;

private:
    static constexpr Seconds step = 0.05;
    LivingCreature& life_;
};

}  // namespace quibbits
