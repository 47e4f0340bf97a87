#include "desktop/FolderWatch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <memory>
#include <set>
#include <utility>

namespace quibbits {
namespace {

constexpr Seconds between = 0.5;  // looks at what the kernel has gathered

class FolderWatch {
public:
    FolderWatch(EventRunLoop& loop, FileDescriptor inotify,
                std::function<void(const std::string&)> changed)
        : loop_(loop), inotify_(std::move(inotify)), changed_(std::move(changed)) {
        listen();
    }

private:
    void listen() {
        readable_ = loop_.watch(inotify_.get(), [this] { receive(); });
    }

    void receive() {
        const auto names = read();
        // Copying a large file writes thousands of times; once told, it may wait.
        readable_.reset();
        pause_ = loop_.timer(between, [this] { listen(); });
        const auto changed = changed_;  // the call may end this watch
        for (const std::string& name : names) changed(name);
    }

    std::set<std::string> read() {
        std::set<std::string> names;
        alignas(inotify_event) std::array<char, 16 * 1024> bytes;
        for (;;) {
            const ssize_t length = ::read(inotify_.get(), bytes.data(), bytes.size());
            if (length <= 0) return names;
            inotify_event event;
            for (std::size_t at = 0; at + sizeof event <= static_cast<std::size_t>(length);
                 at += sizeof event + event.len) {
                std::memcpy(&event, bytes.data() + at, sizeof event);
                if ((event.mask & IN_IGNORED) != 0) continue;
                names.insert(event.len > 0 ? bytes.data() + at + sizeof event : "");
            }
        }
    }

    EventRunLoop& loop_;
    FileDescriptor inotify_;
    std::function<void(const std::string&)> changed_;
    Subscription readable_;
    Timer pause_;
};

}  // namespace

std::optional<Subscription> watchFolder(EventRunLoop& loop, const std::string& folder,
                                        std::function<void(const std::string& name)> changed) {
    FileDescriptor inotify(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    if (!inotify) return std::nullopt;
    constexpr std::uint32_t what = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_MODIFY |
                                   IN_CLOSE_WRITE | IN_ONLYDIR;
    if (inotify_add_watch(inotify.get(), folder.c_str(), what) < 0) return std::nullopt;
    auto watch = std::make_shared<FolderWatch>(loop, std::move(inotify), std::move(changed));
    return Subscription([watch]() mutable { watch.reset(); });
}

}  // namespace quibbits
