#pragma once
// Addresses such as quibbits://celebrate, by which scripts and other programs speak to creatures.

#include <optional>
#include <string>
#include <string_view>

namespace quibbits {

/// What addresses for this program begin with.
inline constexpr std::string_view ownScheme = "quibbits:";

/// The word of an address: what stands where a web address has its host, without user, password and
/// port and with its percent codes read, letters as they are; empty where there is none. Nothing
/// for an address of another scheme.
std::optional<std::string> wordOf(std::string_view address);

}  // namespace quibbits
