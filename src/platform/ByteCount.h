#pragma once
// Sizes of files as people read them.

#include <cstdint>
#include <string>

namespace quibbits {

/// A size in decimal units, no finer than it needs: "Zero KB", "1 byte", "999 bytes", "12 KB",
/// "1.5 MB", "2.25 GB". Kilobytes are whole, megabytes have one decimal, larger units two; zeros at
/// the end of the decimals are left out.
std::string fileSizeText(std::uint64_t bytes);

}  // namespace quibbits
