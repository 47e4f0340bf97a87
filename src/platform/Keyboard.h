#pragma once
// The keys of the whole desktop, for something of this program that is open over everything and can
// be walked through without a mouse.

#include <functional>

#include "platform/Signal.h"

namespace quibbits {

/// What a key means to somebody who walks through something. Tab goes on like the arrow.
enum class WalkingKey { left, right, up, down, choose, leave, other };

class Keyboard {
public:
    virtual ~Keyboard() = default;
    /// Every press of a key comes here instead of anywhere else, until the handle ends. While
    /// another program has the keys, they come as soon as that one lets go.
    [[nodiscard]] virtual Subscription take(std::function<void(WalkingKey)> pressed) = 0;
};

}  // namespace quibbits
