#include "desktop/files/Browsers.h"

#include <algorithm>
#include <array>

#include "desktop/files/InstalledApplications.h"
#include "platform/Text.h"

namespace quibbits {
namespace {

constexpr std::size_t mostNames = 256;  // remembered

/// Each stands in a name as whole words, one after the other.
constexpr auto browsers = std::to_array<std::string_view>({
    "firefox",  "librewolf", "waterfox",    "floorp",          "zen",           "icecat",
    "palemoon", "seamonkey", "tor browser", "mullvad browser", "chromium",      "chrome",
    "brave",    "vivaldi",   "opera",       "thorium",         "msedge",        "microsoft edge",
    "epiphany", "falkon",    "konqueror",   "midori",          "qutebrowser",   "yandex browser",
    "nyxt",     "pale moon", "luakit",      "angelfish",       "otter browser", "gnome web",
});

/// The words of a name in lower case, each with a blank on both sides.
std::string wordsOf(std::string_view name) {
    std::string words = " ";
    for (const char c : asciiLowercase(name)) {
        const bool belongs = (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
        if (belongs) {
            words += c;
        } else if (words.back() != ' ') {
            words += ' ';
        }
    }
    if (words.back() != ' ') words += ' ';
    return words;
}

}  // namespace

bool soundsLikeBrowser(std::string_view name) {
    const std::string words = wordsOf(name);
    return std::ranges::any_of(browsers, [&](std::string_view browser) {
        return words.find(' ' + std::string(browser) + ' ') != std::string::npos;
    });
}

bool Browsers::contains(const std::string& name) {
    if (name.empty()) return false;
    if (soundsLikeBrowser(name)) return true;
    if (const auto found = known_.find(name); found != known_.end()) return found->second;
    if (known_.size() >= mostNames) known_.clear();
    const auto installed = installedApplications(folders_);
    return known_[name] = std::ranges::any_of(installed, [&](const auto& application) {
               return application.browsesWeb && application.id == name;
           });
}

}  // namespace quibbits
