#include "desktop/files/InstalledApplications.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <set>

#include "desktop/files/WholeFile.h"
#include "platform/Text.h"

namespace quibbits {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t longestFile = 256 << 10;
constexpr std::size_t mostApplications = 5000;

std::string variable(const char* name, const char* otherwise) {
    const char* value = std::getenv(name);
    return value && *value ? value : otherwise;
}

/// Folders below a folder of applications stand in an id as words before a dash.
std::string idOf(const fs::path& folder, const fs::path& file) {
    std::string id = file.lexically_relative(folder).replace_extension().generic_string();
    std::ranges::replace(id, '/', '-');
    return id;
}

/// Whether a word stands in a list with a semicolon after each.
bool isListed(std::string_view word, std::string_view list) {
    return (";" + std::string(list) + ";").find(";" + std::string(word) + ";") != std::string::npos;
}

/// The name of the program that a command line starts; nothing when it starts it by another one.
std::string programOf(std::string_view command) {
    static constexpr std::array<std::string_view, 12> starters{
        "bash", "dbus-launch", "env",  "flatpak", "gtk-launch", "java",
        "perl", "pkexec",      "ruby", "sh",      "snap",       "wine"};
    if (command.starts_with('"')) command.remove_prefix(1);
    std::string name =
        fs::path(command.substr(0, command.find_first_of(" \t\""))).filename().native();
    const bool isStarter =
        name.starts_with("python") || std::ranges::find(starters, name) != starters.end();
    return isStarter ? std::string() : name;
}

}  // namespace

std::vector<fs::path> applicationFolders() {
    std::vector<fs::path> folders;
    const std::string home = variable("HOME", "/");
    folders.push_back(fs::path(variable("XDG_DATA_HOME", (home + "/.local/share").c_str())) /
                      "applications");
    const std::string all = variable("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    for (std::size_t at = 0; at < all.size();) {
        const auto end = std::min(all.find(':', at), all.size());
        if (end > at) folders.push_back(fs::path(all.substr(at, end - at)) / "applications");
        at = end + 1;
    }
    return folders;
}

std::optional<InstalledApplication> readDesktopFile(std::string id, std::string_view text) {
    InstalledApplication application{.id = std::move(id)};
    std::string_view windowClass;
    std::string program;
    bool isApplication = false;
    bool isOurs = false;  // in the group that counts
    for (std::size_t at = 0; at < text.size();) {
        const auto end = std::min(text.find('\n', at), text.size());
        std::string_view line = text.substr(at, end - at);
        at = end + 1;
        while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.remove_suffix(1);
        if (line.starts_with('[')) isOurs = line == "[Desktop Entry]";
        const auto sign = line.find('=');
        if (!isOurs || sign == std::string_view::npos) continue;
        std::string_view key = line.substr(0, sign);
        std::string_view value = line.substr(sign + 1);
        while (key.ends_with(' ')) key.remove_suffix(1);
        while (value.starts_with(' ')) value.remove_prefix(1);
        if (key == "Name") application.name = value;
        if (key == "Icon") application.icon = value;
        if (key == "StartupWMClass") windowClass = value;
        if (key == "Categories") application.browsesWeb = isListed("WebBrowser", value);
        if (key == "Exec") program = programOf(value);
        if (key == "Type") isApplication = value == "Application";
        if ((key == "NoDisplay" || key == "Hidden") && value == "true") return std::nullopt;
    }
    if (!isApplication || application.name.empty()) return std::nullopt;
    if (!windowClass.empty()) {
        application.id = windowClass;
    } else if (application.id.find('.') == std::string::npos && !program.empty()) {
        application.id = program;
    }
    application.id = asciiLowercase(application.id);
    return application;
}

std::vector<InstalledApplication> installedApplications(const std::vector<fs::path>& folders) {
    std::vector<InstalledApplication> all;
    std::set<std::string> seen;
    for (const fs::path& folder : folders) {
        std::error_code error;
        for (fs::recursive_directory_iterator at(folder, error), end; !error && at != end;
             at.increment(error)) {
            if (at->path().extension() != ".desktop" || all.size() >= mostApplications) continue;
            const std::string id = idOf(folder, at->path());
            if (!seen.insert(id).second) continue;
            const auto text = readWholeFile(at->path(), longestFile);
            auto application = text ? readDesktopFile(id, *text) : std::nullopt;
            if (application) all.push_back(*std::move(application));
        }
    }
    std::ranges::stable_sort(all, {}, &InstalledApplication::name);
    return all;
}

}  // namespace quibbits
