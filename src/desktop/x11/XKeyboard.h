#pragma once
// The keys of the desktop by an active grab, as long as somebody wants them.

#include <functional>
#include <memory>
#include <vector>

#include "desktop/x11/Connection.h"
#include "platform/Keyboard.h"

namespace quibbits::x11 {

class XKeyboard final : public Keyboard {
public:
    explicit XKeyboard(Connection& connection);

    Subscription take(std::function<void(WalkingKey)> pressed) override;

private:
    using Listener = std::shared_ptr<std::function<void(WalkingKey)>>;
    void grab();
    void leave(const Listener& listener);
    void pressedKey(const xcb_key_press_event_t& event);

    Connection& connection_;
    std::vector<Listener> listeners_;  // the last one hears
    bool holds_ = false;
    int refusals_ = 0;
    Timer askAgain_;
    Subscription presses_;
};

}  // namespace quibbits::x11
