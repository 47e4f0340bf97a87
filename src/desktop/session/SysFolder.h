#pragma once
// One value from one small file, as the kernel tells what it knows under /sys.

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quibbits::session {

/// The file's first line, none when it cannot be read.
std::optional<std::string> sysLine(const std::filesystem::path& file);
/// The whole number that is all of the file's first line.
std::optional<int> sysNumber(const std::filesystem::path& file);
/// What lies in a folder, in the order of names; empty without the folder.
std::vector<std::filesystem::path> sysEntries(const std::filesystem::path& folder);

}  // namespace quibbits::session
