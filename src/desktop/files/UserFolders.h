#pragma once
// Where a user's files lie, by the desktop's conventions: the environment first, then the usual
// places at home.

#include <filesystem>

namespace quibbits {

/// $XDG_CONFIG_HOME, or ~/.config.
std::filesystem::path configFolder();
/// $XDG_DATA_HOME, or ~/.local/share.
std::filesystem::path dataFolder();
/// The folder that the desktop shows, without a slash at its end: what the user's list of folders
/// names, else ~/Desktop.
std::filesystem::path desktopFolder();
/// The folder that downloads go to: what the same list names, else ~/Downloads.
std::filesystem::path downloadsFolder();

}  // namespace quibbits
