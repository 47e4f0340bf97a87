#pragma once
// Keys that reach the program whichever program has the keyboard.

#include <functional>
#include <optional>

#include "platform/Pointer.h"
#include "platform/Signal.h"

namespace quibbits {

/// The keys that somebody asks for, by what they do.
enum class Key { deleteBackwards };

struct HotKey {
    Key key = Key::deleteBackwards;
    Modifiers modifiers;  // exactly these, whatever locks are on
    bool operator==(const HotKey&) const = default;
};

class HotKeys {
public:
    virtual ~HotKeys() = default;
    /// Takes the combination away from every other program until the handle ends, and tells each
    /// press once, however long it lasts. Nothing when another program has it already.
    virtual std::optional<Subscription> hold(HotKey key, std::function<void()> pressed) = 0;
};

}  // namespace quibbits
