#pragma once
// The applications of the desktop's menus, as their desktop files tell.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Workspace.h"

namespace quibbits {

/// $XDG_DATA_HOME and $XDG_DATA_DIRS with "applications" behind them, the user's first.
std::vector<std::filesystem::path> applicationFolders();
/// By name. Of two files of one id the earlier folder's counts; hidden ones are left out.
std::vector<InstalledApplication> installedApplications(
    const std::vector<std::filesystem::path>& folders);
/// Name and icon from the text of a desktop file; nothing for what menus do not show. Its id, in
/// lower case, is what its windows will be called: the class that it tells of, else the file's id
/// where that is one of the reversed addresses that toolkits hand on, else the program's name.
std::optional<InstalledApplication> readDesktopFile(std::string id, std::string_view text);

}  // namespace quibbits
