#pragma once
// Questions about the elements of another program's window.

#include <optional>
#include <string>
#include <utility>

#include "platform/Accessibility.h"

namespace quibbits::AX {

/// The label of an element: its own name, else the first one among its children, so many levels
/// down. The element that has the name, and the name.
std::optional<std::pair<ElementIndex, std::string>> named(const AccessibleWindow& window,
                                                          ElementIndex element, int depth);

}  // namespace quibbits::AX
