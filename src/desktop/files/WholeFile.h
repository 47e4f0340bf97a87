#pragma once
// Files read and replaced as a whole.

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace quibbits {

/// The bytes of a regular file. Nothing, with errno set, when it cannot be read or is larger than
/// the limit.
std::optional<std::string> readWholeFile(const std::filesystem::path& file, std::size_t limit);

/// Puts a file with these bytes in the place of what stands there, so that a reader or a crash at
/// any moment finds the old file or the new one. False, with errno set and the old file untouched,
/// when that fails. Two writers of one file at a time need a lock.
bool writeWholeFile(const std::filesystem::path& file, std::string_view bytes);

}  // namespace quibbits
