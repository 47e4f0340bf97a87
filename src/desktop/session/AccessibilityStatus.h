#pragma once
// Whether the desktop's programs tell the accessibility service what they show, and asking for it:
// the desktop keeps one switch, which any program of the user may turn on.

#include "desktop/session/Bus.h"
#include "platform/Accessibility.h"

namespace quibbits::session {

class AccessibilityStatus final : public Accessibility {
public:
    explicit AccessibilityStatus(Bus& session);

    bool isTrusted() const override { return enabled_; }
    /// The answer may have changed.
    std::function<void()> onChange;
    void askForTrust() override;

private:
    void ask();

    Bus& session_;
    bool enabled_ = false;
    Subscription question_;
    Subscription request_;
    Subscription changes_;
    Subscription returns_;
};

}  // namespace quibbits::session
