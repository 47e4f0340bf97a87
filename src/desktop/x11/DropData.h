#pragma once
// What other programs drop, as plain values.

#include <string>
#include <string_view>
#include <vector>

namespace quibbits::x11 {

/// The absolute paths of the files of this machine in a text/uri-list. Other addresses and broken
/// ones are left out.
std::vector<std::string> filesOfUriList(std::string_view list);

}  // namespace quibbits::x11
