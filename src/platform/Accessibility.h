#pragma once
// The desktop's accessibility service, by which programs tell where their parts lie on screen.

namespace quibbits {

class Accessibility {
public:
    virtual ~Accessibility() = default;
    /// Whether programs tell it anything.
    virtual bool isTrusted() const = 0;
    /// Asks the desktop to let them; whether it does is seen later.
    virtual void askForTrust() = 0;
};

}  // namespace quibbits
