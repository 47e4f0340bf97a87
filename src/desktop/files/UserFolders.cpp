#include "desktop/files/UserFolders.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "desktop/files/WholeFile.h"

namespace quibbits {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t longestList = 64 * 1024;

fs::path home() {
    const char* home = std::getenv("HOME");
    return home && home[0] ? home : "/";
}

fs::path withoutEndingSlash(fs::path folder) {
    folder = folder.lexically_normal();
    return folder.has_filename() ? folder : folder.parent_path();
}

fs::path folder(const char* variable, const char* atHome) {
    const char* told = std::getenv(variable);
    return told && told[0] == '/' ? fs::path(told) : home() / atHome;
}

/// What the user's list of folders says under the name, else a folder at home.
fs::path listedFolder(const std::string& name, const char* atHome) {
    // A line is XDG_DESKTOP_DIR="$HOME/Desktop", or a path from the root in quotes.
    const std::string key = name + "=\"";
    constexpr std::string_view homeSign = "$HOME/";
    const auto list = readWholeFile(configFolder() / "user-dirs.dirs", longestList);
    for (std::size_t at = 0; list && at < list->size();) {
        const std::size_t end = std::min(list->find('\n', at), list->size());
        std::string_view line(*list);
        line = line.substr(at, end - at);
        at = end + 1;
        if (!line.starts_with(key)) continue;
        line = line.substr(key.size(), line.rfind('"') - key.size());
        if (line.starts_with(homeSign)) return home() / line.substr(homeSign.size());
        if (line.starts_with('/')) return line;
    }
    return home() / atHome;
}

}  // namespace

fs::path configFolder() {
    return folder("XDG_CONFIG_HOME", ".config");
}

fs::path dataFolder() {
    return folder("XDG_DATA_HOME", ".local/share");
}

fs::path desktopFolder() {
    return withoutEndingSlash(listedFolder("XDG_DESKTOP_DIR", "Desktop"));
}

fs::path downloadsFolder() {
    // A list that names home itself means that there is none, not that all of home is downloads.
    const auto told = withoutEndingSlash(listedFolder("XDG_DOWNLOAD_DIR", "Downloads"));
    return told == withoutEndingSlash(home()) ? told / "Downloads" : told;
}

}  // namespace quibbits
