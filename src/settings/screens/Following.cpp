#include "settings/screens/Following.h"

#include <utility>

namespace quibbits::screens {

namespace {

constexpr Seconds gathering = 0.1;  // one thing that happens often writes several values

}  // namespace

Following::Following(const Computer& computer, std::function<void()> refresh)
    : loop_(computer.runLoop), refresh_(std::move(refresh)) {
    changes_.push_back(computer.defaults.whenChanged([this] { soon(); }));
    changes_.push_back(computer.session.changed.subscribe([this] { soon(); }));
    changes_.push_back(computer.screens.changed.subscribe([this] { soon(); }));
}

void Following::soon() {
    if (std::exchange(isComing_, true)) return;
    loop_.after(gathering, lifetime_.guard([this] {
        isComing_ = false;
        refresh_();
    }));
}

}  // namespace quibbits::screens
