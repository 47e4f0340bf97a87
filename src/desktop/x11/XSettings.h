#pragma once
// The settings that desktops share over the XSETTINGS protocol.

#include "desktop/x11/Connection.h"

namespace quibbits::x11 {

/// The whole factor by which the desktop enlarges windows; 1 where no settings daemon runs.
int windowScalingFactor(const Connection& connection);

/// A whole number among the settings, by its name; nothing when it is missing or the bytes make no
/// sense.
std::optional<int> integerSetting(std::string_view settings, std::string_view name);

}  // namespace quibbits::x11
