#pragma once
// Animations in the few shapes that the effects are made of.

#include <initializer_list>
#include <vector>

#include "layers/Animation.h"

namespace quibbits {

inline std::vector<AnimatedValue> values(std::initializer_list<double> list) {
    return {list.begin(), list.end()};
}

/// One run whose last state stays.
inline AnimationTiming held(Seconds duration) {
    return {.duration = duration, .fill = FillMode::forwards, .removedOnCompletion = false};
}

inline Animation change(KeyPath key, double from, double to, AnimationTiming timing,
                        TimingFunction curve = TimingFunction::linear()) {
    return {.keyPath = key,
            .motion = BasicMotion{.from = from, .to = to},
            .curve = curve,
            .timing = timing};
}

/// Through values in even steps, at an even pace.
inline Animation through(KeyPath key, std::initializer_list<double> list, Seconds duration) {
    return {.keyPath = key,
            .motion = KeyframeMotion{.values = values(list)},
            .timing = {.duration = duration}};
}

}  // namespace quibbits
