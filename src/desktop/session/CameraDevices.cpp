#include "desktop/session/CameraDevices.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "desktop/session/SysFolder.h"
#include "platform/Text.h"

namespace quibbits::session {
namespace {

namespace fs = std::filesystem;

/// The number at the end of a name that begins so.
std::optional<int> numberAfter(std::string_view start, const std::string& name) {
    if (!name.starts_with(start)) return std::nullopt;
    int number = 0;
    const char* const end = name.data() + name.size();
    const auto [stop, error] = std::from_chars(name.data() + start.size(), end, number);
    return error == std::errc{} && stop == end ? std::optional(number) : std::nullopt;
}

/// Drivers of chips that turn one film into another.
bool isTransformer(const fs::path& known) {
    const auto name = asciiLowercase(sysLine(known / "name").value_or(""));
    constexpr std::array endings{"codec",   "dec",    "enc",    "isp",    "decoder",
                                 "encoder", "decode", "encode", "scaler", "m2m"};
    return std::ranges::any_of(endings, [&](const char* end) { return name.ends_with(end); });
}

bool isSoftware(const fs::path& known) {
    std::error_code error;
    return fs::canonical(known, error).native().find("/devices/virtual/") != std::string::npos;
}

/// What the device manager found out by asking; true where it has not asked.
bool takesPictures(const fs::path& known, const fs::path& records) {
    constexpr std::string_view question = "E:ID_V4L_CAPABILITIES=";
    const auto number = sysLine(known / "dev");
    std::ifstream record(records / ("c" + number.value_or("")));
    for (std::string line; std::getline(record, line);) {
        if (line.starts_with(question)) return line.find(":capture:") != std::string::npos;
    }
    return true;
}

/// The same file, or the same device by another path, as programs in a sandbox have it.
bool isSame(const fs::path& device, const fs::path& link) {
    struct stat one {};
    struct stat other {};
    if (stat(device.c_str(), &one) != 0 || stat(link.c_str(), &other) != 0) return false;
    if (S_ISCHR(one.st_mode)) return S_ISCHR(other.st_mode) && one.st_rdev == other.st_rdev;
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

/// What a link of a process' folder leads to.
std::string targetOf(const fs::path& link) {
    std::array<char, 256> target;
    const auto length = readlink(link.c_str(), target.data(), target.size());
    return length > 0 ? std::string(target.data(), static_cast<std::size_t>(length)) : "";
}

/// Services that hand cameras on, or look after them.
bool isService(const fs::path& process) {
    const auto name = sysLine(process / "comm").value_or("");
    return name.starts_with("wireplumber") || name.starts_with("pipewire") ||
           name.starts_with("xdg-desktop-por");
}

/// Pictures come through memory that a program shares with the device.
bool sharesMemory(const fs::path& process, const fs::path& device) {
    const std::string ending = "/" + device.filename().native();
    std::ifstream maps(process / "maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.ends_with(ending) || line.find("/dmabuf") != std::string::npos) return true;
    }
    return false;
}

/// How often a process has each device open.
std::vector<int> openings(const fs::path& process, const std::vector<fs::path>& devices) {
    std::vector<int> times(devices.size(), 0);
    std::error_code refused;  // another user's, or gone by now
    for (fs::directory_iterator file(process / "fd", refused), end; !refused && file != end;
         file.increment(refused)) {
        const std::string target = targetOf(file->path());
        const std::string_view name = std::string_view(target).substr(target.rfind('/') + 1);
        for (std::size_t i = 0; i < devices.size(); ++i) {
            if (devices[i].filename() == name && isSame(devices[i], file->path())) ++times[i];
        }
    }
    return times;
}

}  // namespace

std::vector<fs::path> camerasIn(const CameraRoots& roots) {
    std::vector<std::pair<int, fs::path>> numbered;
    std::error_code error;
    for (fs::directory_iterator at(roots.devices, error), end; !error && at != end;
         at.increment(error)) {
        const auto number = numberAfter("video", at->path().filename());
        const fs::path known = roots.system / "class/video4linux" / at->path().filename();
        if (!number || isTransformer(known) || isSoftware(known)) continue;
        if (takesPictures(known, roots.records)) numbered.emplace_back(*number, at->path());
    }
    std::ranges::sort(numbered);
    std::vector<fs::path> paths;
    for (auto& [number, path] : numbered) paths.push_back(std::move(path));
    return paths;
}

std::vector<std::vector<Holder>> holdersOf(const std::vector<fs::path>& devices,
                                           const fs::path& processes) {
    std::vector<std::vector<Holder>> holders(devices.size());
    std::error_code error;
    for (fs::directory_iterator at(processes, error), end; !error && at != end;
         at.increment(error)) {
        const fs::path& process = at->path();
        const auto number = numberAfter("", process.filename());
        if (!number) continue;
        const auto times = openings(process, devices);
        for (std::size_t i = 0; i < devices.size(); ++i) {
            if (times[i] == 0) continue;
            holders[i].push_back(
                {.process = *number,
                 .times = times[i],
                 .isIdleService = isService(process) && !sharesMemory(process, devices[i])});
        }
    }
    return holders;
}

}  // namespace quibbits::session
