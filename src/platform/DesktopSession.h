#pragma once
// The user's session on the desktop: which of its services are there for the program, and whether
// it starts the program when the user logs in.

#include <optional>

#include "platform/Signal.h"

namespace quibbits {

/// What some desktops have and others lack.
enum class SessionService { tray, notifications, accessibility };

class DesktopSession {
public:
    virtual ~DesktopSession() = default;
    /// Whether the service is there now. Nothing where it always is and the user is asked for leave
    /// instead.
    virtual std::optional<bool> has(SessionService service) const = 0;
    /// Whether logging in starts the program. Nothing where that cannot be chosen.
    virtual std::optional<bool> startsProgram() const = 0;
    virtual void setStartsProgram(bool starts) = 0;

    Signal<> changed;  // one of the answers
};

}  // namespace quibbits
