#pragma once
// XML as a list of events. Attributes, comments and declarations are left out.

#include <string_view>
#include <vector>

#include "platform/Resources.h"

namespace quibbits {

constexpr std::size_t xmlMostEvents = 1'000'000;
constexpr std::size_t xmlMostBytes = std::size_t{16} << 20;

/// The events up to the end, the first mistake or the limit. Text that belongs together is one
/// event. An entity that the document declares itself is left out, never expanded; a document that
/// is larger than the limit gives no event.
std::vector<XmlEvent> xmlEvents(std::string_view document);
/// Whether the events are those of a whole document with something in it: none when a mistake cut
/// it short.
bool isWhole(const std::vector<XmlEvent>& events);

}  // namespace quibbits
