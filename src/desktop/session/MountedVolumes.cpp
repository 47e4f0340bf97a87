#include "desktop/session/MountedVolumes.h"

#include <fcntl.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <utility>
#include <vector>

#include "desktop/session/SysFolder.h"

namespace quibbits::session {
namespace {

/// The kernel writes a blank, a tab, a new line and a backslash as a backslash and three octal
/// digits.
std::string plain(const std::string& escaped) {
    std::string text;
    for (std::size_t i = 0; i < escaped.size(); ++i) {
        const auto isOctal = [&](std::size_t at) {
            return escaped[at] >= '0' && escaped[at] <= '7';
        };
        if (escaped[i] == '\\' && i + 3 < escaped.size() && isOctal(i + 1) && isOctal(i + 2) &&
            isOctal(i + 3)) {
            text += static_cast<char>(std::stoi(escaped.substr(i + 1, 3), nullptr, 8));
            i += 3;
        } else {
            text += escaped[i];
        }
    }
    return text;
}

/// The place and the device of a line: "36 35 7:0 / /media/a ro,nosuid shared:1 - iso9660
/// /dev/loop0 ro"; before the dash stand as many words as there are.
std::optional<std::pair<std::string, std::string>> mountOf(const std::string& line) {
    std::istringstream words(line);
    std::vector<std::string> before;
    std::string word;
    while (words >> word && word != "-") before.push_back(word);
    std::string kind;
    std::string device;
    constexpr std::size_t place = 4;
    if (before.size() <= place || !(words >> kind >> device)) return std::nullopt;
    return std::pair{plain(before[place]), plain(device)};
}

}  // namespace

MountedVolumes::MountedVolumes(EventRunLoop& loop, Places places)
    : places_(std::move(places)),
      news_(open(places_.mounts.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
    known_ = read().value_or(known_);
    if (news_) watch_ = loop.watchUrgent(news_.get(), [this] { refresh(); });
}

std::optional<std::map<std::string, std::string>> MountedVolumes::read() const {
    std::ifstream list(places_.mounts);
    if (!list) return std::nullopt;
    std::map<std::string, std::string> mounts;
    for (std::string line; std::getline(list, line);) {
        if (auto mount = mountOf(line)) mounts.insert_or_assign(mount->first, mount->second);
    }
    return mounts;
}

void MountedVolumes::refresh() {
    const auto now = read();
    if (!now) return;
    const auto before = std::exchange(known_, *now);
    // Another device at the same place is one volume gone and one come.
    std::vector<std::string> gone;
    for (const auto& mount : before) {
        const auto same = now->find(mount.first);
        if (same == now->end() || same->second != mount.second) gone.push_back(mount.first);
    }
    const bool anyNew = std::ranges::any_of(*now, [&](const auto& mount) {
        const auto same = before.find(mount.first);
        return same == before.end() || same->second != mount.second;
    });
    for (const std::string& place : gone) unmounted.emit(place);
    if (anyNew) mounted.emit();
}

std::optional<std::string> MountedVolumes::imageBehind(const std::string& device) const {
    constexpr std::string_view loopDevices = "/dev/loop";
    if (!device.starts_with(loopDevices)) return std::nullopt;
    const auto folder = places_.system / "class/block" / std::filesystem::path(device).filename();
    if (auto file = sysLine(folder / "loop/backing_file")) return file;
    return sysLine(folder / "../loop/backing_file");  // of a partition, its whole device's
}

std::optional<std::map<std::string, std::string>> MountedVolumes::images() const {
    std::map<std::string, std::string> images;
    for (const auto& [place, device] : known_) {
        if (auto image = imageBehind(device)) images[place] = std::move(*image);
    }
    return images;
}

}  // namespace quibbits::session
