#include "desktop/session/Cameras.h"

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

namespace quibbits::session {
namespace {

namespace fs = std::filesystem;

// Programs open a camera for a moment just to ask what it can do.
constexpr Seconds settling = 1;

std::optional<int> numberOf(const fs::path& device) {
    constexpr std::string_view start = "video";
    const std::string name = device.filename();
    if (!name.starts_with(start)) return std::nullopt;
    int number = 0;
    const char* const end = name.data() + name.size();
    const auto [stop, error] = std::from_chars(name.data() + start.size(), end, number);
    return error == std::errc{} && stop == end ? std::optional(number) : std::nullopt;
}

std::vector<fs::path> camerasIn(const fs::path& folder) {
    std::vector<std::pair<int, fs::path>> numbered;
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
        if (const auto number = numberOf(at->path())) numbered.emplace_back(*number, at->path());
    }
    std::ranges::sort(numbered);
    std::vector<fs::path> paths;
    for (auto& [number, path] : numbered) paths.push_back(std::move(path));
    return paths;
}

/// Tells of each file that a process of this user holds open: the link to it and the file's name.
template <typename Visitor>
void forEachOpenFile(const fs::path& processes, Visitor visit) {
    std::error_code error;
    for (fs::directory_iterator process(processes, error), last; !error && process != last;
         process.increment(error)) {
        std::error_code refused;  // another user's, or gone by now
        for (fs::directory_iterator file(process->path() / "fd", refused), end;
             !refused && file != end; file.increment(refused)) {
            std::array<char, 256> target;
            const auto length = readlink(file->path().c_str(), target.data(), target.size());
            if (length <= 0) continue;
            const std::string_view whole(target.data(), static_cast<std::size_t>(length));
            visit(file->path(), std::string(whole.substr(whole.rfind('/') + 1)));
        }
    }
}

/// The same file, or the same device by another path, as programs in a sandbox have it.
bool isSame(const fs::path& device, const fs::path& link) {
    struct stat one {};
    struct stat other {};
    if (stat(device.c_str(), &one) != 0 || stat(link.c_str(), &other) != 0) return false;
    if (S_ISCHR(one.st_mode)) return S_ISCHR(other.st_mode) && one.st_rdev == other.st_rdev;
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

}  // namespace

Cameras::Cameras(EventRunLoop& loop, const fs::path& devices, fs::path processes)
    : loop_(loop), processes_(std::move(processes)) {
    const auto paths = camerasIn(devices);
    inUse_.assign(paths.size(), false);
    if (paths.empty()) return;
    inotify_ = FileDescriptor(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    if (!inotify_) return;
    for (const auto& path : paths) {
        const int watch = inotify_add_watch(inotify_.get(), path.c_str(),
                                            IN_OPEN | IN_CLOSE_WRITE | IN_CLOSE_NOWRITE);
        devices_.push_back({.path = path, .watch = watch});
    }
    readable_ = loop_.watch(inotify_.get(), [this] { receive(); });
}

void Cameras::receive() {
    std::array<char, 4096> bytes;
    const ssize_t length = read(inotify_.get(), bytes.data(), bytes.size());
    if (length <= 0) return;
    inotify_event event;
    for (std::size_t at = 0; at + sizeof event <= static_cast<std::size_t>(length);
         at += sizeof event + event.len) {
        std::memcpy(&event, bytes.data() + at, sizeof event);
        count(event.wd, event.mask);
    }
    settle_ = loop_.timer(settling, [this] { settle(); });
}

void Cameras::count(int watch, std::uint32_t what) {
    for (auto& device : devices_) {
        const bool forgets = (what & IN_Q_OVERFLOW) != 0;
        if (!forgets && device.watch != watch) continue;
        if ((what & IN_OPEN) != 0) ++device.uses;
        if ((what & (IN_CLOSE_WRITE | IN_CLOSE_NOWRITE)) != 0) {
            device.wasClosed = true;
            device.uses = std::max(device.uses - 1, 0);  // it may have been opened before us
        }
        if (forgets || (what & IN_IGNORED) != 0) device.uses = 0;
        if ((what & IN_IGNORED) != 0) device.watch = -1;
    }
}

void Cameras::countHolders() {
    for (auto& device : devices_) {
        if (device.wasClosed) device.uses = 0;
    }
    forEachOpenFile(processes_, [this](const fs::path& link, const std::string& name) {
        for (auto& device : devices_) {
            if (device.wasClosed && device.path.filename() == name && isSame(device.path, link)) {
                ++device.uses;
            }
        }
    });
    for (auto& device : devices_) device.wasClosed = false;
}

void Cameras::settle() {
    if (std::ranges::any_of(devices_, [](const auto& device) { return device.wasClosed; })) {
        countHolders();
    }
    std::vector<bool> now;
    for (const auto& device : devices_) now.push_back(device.uses > 0);
    if (std::exchange(inUse_, now) != now && onChange) onChange();
}

}  // namespace quibbits::session
