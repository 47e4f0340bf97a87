#pragma once
// Which cameras are in use, by counting how often each device is opened and closed. The kernel does
// not tell who opens one; this program never does. It also tells several closings at once as one,
// so after a closing the processes are asked who still holds the device.

#include <filesystem>
#include <functional>
#include <vector>

#include "desktop/EventRunLoop.h"

namespace quibbits::session {

class Cameras {
public:
    /// Finds the devices named video0, video1 and so on in the folder, now and never again. Uses
    /// that began before are not seen, nor those of a device that may not be watched.
    Cameras(EventRunLoop& loop, const std::filesystem::path& devices,
            std::filesystem::path processes = "/proc");

    /// For each device, in the order of their numbers.
    const std::vector<bool>& inUse() const { return inUse_; }

    std::function<void()> onChange;

private:
    struct Device {
        std::filesystem::path path;
        int watch = -1;
        int uses = 0;
        bool wasClosed = false;  // since the last settling
    };
    void receive();
    void count(int watch, std::uint32_t what);
    void settle();
    void countHolders();

    EventRunLoop& loop_;
    std::filesystem::path processes_;
    FileDescriptor inotify_;
    std::vector<Device> devices_;
    std::vector<bool> inUse_;
    Subscription readable_;
    Timer settle_;
};

}  // namespace quibbits::session
