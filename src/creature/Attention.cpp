#include "creature/Attention.h"

namespace quibbits {

namespace {

constexpr double fastPointer = 1800;  // points a second
constexpr Seconds freshSample = 0.2;
constexpr Seconds warmsUpAfter = 6;
constexpr Seconds noticesAgainAfter = 15;

}  // namespace

Attention::Approach Attention::approach(Point pointer, Instant now) {
    const Seconds passed = now - pointerAt_;
    const bool fast =
        passed > 0 && passed < freshSample && distance(pointer, pointer_) / passed > fastPointer;
    pointer_ = pointer;
    pointerAt_ = now;
    if (!approached_) {
        approached_ = now;
        settled_ = false;
        return {Visit::begins, fast};
    }
    if (settled_ || now - *approached_ <= warmsUpAfter) return {};
    settled_ = true;
    return {Visit::settles, fast};
}

bool Attention::notice(Instant now) {
    if (now - noticed_ <= noticesAgainAfter) return false;
    noticed_ = now;
    return true;
}

}  // namespace quibbits
