#include "desktop/session/Cameras.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace quibbits::session {
namespace {

// Programs open a camera for a moment just to ask what it can do.
constexpr Seconds settling = 1;

const Holder* find(const std::vector<Holder>& holders, pid_t process) {
    const auto found = std::ranges::find(holders, process, &Holder::process);
    return found == holders.end() ? nullptr : &*found;
}

}  // namespace

Cameras::Cameras(EventRunLoop& loop, CameraRoots roots) : loop_(loop), roots_(std::move(roots)) {
    paths_ = camerasIn(roots_);
    inUse_.assign(paths_.size(), false);
    if (paths_.empty()) return;
    inotify_ = FileDescriptor(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    if (!inotify_) return;
    for (const auto& path : paths_) {
        const int watch = inotify_add_watch(inotify_.get(), path.c_str(),
                                            IN_OPEN | IN_CLOSE_WRITE | IN_CLOSE_NOWRITE);
        devices_.push_back({.watch = watch, .before = {}});
    }
    const auto holders = holdersOf(paths_, roots_.processes);
    for (std::size_t i = 0; i < devices_.size(); ++i) devices_[i].before = holders[i];
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
        if ((what & IN_OPEN) != 0) ++device.openings;
        if ((what & (IN_CLOSE_WRITE | IN_CLOSE_NOWRITE)) != 0) {
            device.wasClosed = true;
            device.openings = std::max(device.openings - 1, 0);  // perhaps opened before us
        }
        if (forgets || (what & IN_IGNORED) != 0) device.openings = 0;
        if ((what & IN_IGNORED) != 0) device.watch = -1;
    }
}

/// The kernel tells several closings at once as one: after a closing what is heard of openings
/// counts for nothing, and only the holders do.
bool Cameras::isUsed(Device& device, const std::vector<Holder>& holders) {
    int users = 0;
    int others = 0;
    for (auto& former : device.before) {
        const Holder* now = find(holders, former.process);
        former.times = now ? std::min(former.times, now->times) : 0;
    }
    for (const auto& holder : holders) {
        const Holder* former = find(device.before, holder.process);
        const int since = holder.times - (former ? former->times : 0);
        (holder.isIdleService ? others : users) += since;
    }
    if (device.wasClosed) device.openings = users + others;
    device.wasClosed = false;
    return device.watch >= 0 && (users > 0 || device.openings > users + others);
}

void Cameras::settle() {
    settle_.cancel();
    const auto holders = holdersOf(paths_, roots_.processes);
    std::vector<bool> now;
    for (std::size_t i = 0; i < devices_.size(); ++i) {
        now.push_back(isUsed(devices_[i], holders[i]));
    }
    if (std::exchange(inUse_, now) != now && onChange) onChange();
}

}  // namespace quibbits::session
