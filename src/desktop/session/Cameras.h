#pragma once
// Which cameras are in use. The kernel tells that a device was opened or closed, not by whom; so
// after it has told, and a moment has passed, the processes are asked who holds the device. One
// that held it before this program came, or a service that holds every camera it finds, does not
// use it. A holder that may not be looked into counts by the openings that were heard.

#include <functional>
#include <vector>

#include "desktop/EventRunLoop.h"
#include "desktop/session/CameraDevices.h"

namespace quibbits::session {

class Cameras {
public:
    /// Finds the cameras now and never again. Those that may not be watched are never in use.
    Cameras(EventRunLoop& loop, CameraRoots roots);

    /// For each camera, in the order of their numbers.
    const std::vector<bool>& inUse() const { return inUse_; }

    std::function<void()> onChange;

private:
    struct Device {
        int watch = -1;
        std::vector<Holder> before;  // held it when this program came
        int openings = 0;            // heard of, less the closings
        bool wasClosed = false;      // since the last settling
    };
    void receive();
    void count(int watch, std::uint32_t what);
    void settle();
    static bool isUsed(Device& device, const std::vector<Holder>& holders);

    EventRunLoop& loop_;
    CameraRoots roots_;
    std::vector<std::filesystem::path> paths_;
    FileDescriptor inotify_;
    std::vector<Device> devices_;  // as the paths
    std::vector<bool> inUse_;
    Subscription readable_;
    Timer settle_;
};

}  // namespace quibbits::session
