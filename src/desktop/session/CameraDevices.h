#pragma once
// Which devices are cameras, and which programs hold one open, by the kernel's files.

#include <sys/types.h>

#include <filesystem>
#include <map>
#include <vector>

namespace quibbits::session {

/// Where the kernel and the device manager keep what they know.
struct CameraRoots {
    std::filesystem::path devices = "/dev";
    std::filesystem::path system = "/sys";             // holds class/video4linux
    std::filesystem::path records = "/run/udev/data";  // of the device manager
    std::filesystem::path processes = "/proc";
};

/// The devices video0, video1 and so on that take pictures of the world, by their numbers: not the
/// codecs, scalers and data channels that are called so too, nor cameras made of software.
std::vector<std::filesystem::path> camerasIn(const CameraRoots& roots);

/// A process that has a device open so many times.
struct Holder {
    pid_t process = 0;
    int times = 0;
    /// A service that opens every camera it finds and keeps it; one that is not taking pictures.
    bool isIdleService = false;
    bool operator==(const Holder&) const = default;
};

/// For each device, the processes of this user that hold it open.
std::vector<std::vector<Holder>> holdersOf(const std::vector<std::filesystem::path>& devices,
                                           const std::filesystem::path& processes);

}  // namespace quibbits::session
