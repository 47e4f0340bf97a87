#pragma once
// What is mounted, by the kernel's own list, and which disk image lies behind a volume: the file
// that a loop device reads from. Asks no service.

#include <filesystem>
#include <set>

#include "desktop/EventRunLoop.h"
#include "platform/Volumes.h"

namespace quibbits::session {

class MountedVolumes final : public Volumes {
public:
    struct Places {
        std::filesystem::path mounts = "/proc/self/mountinfo";
        std::filesystem::path system = "/sys";
    };
    MountedVolumes(EventRunLoop& loop, Places places);

    std::optional<std::map<std::string, std::string>> images() const override;
    /// Compares the list with what it was and tells what came and went. The kernel's news call it.
    void refresh();

private:
    /// The device that each place is mounted from.
    std::optional<std::map<std::string, std::string>> read() const;
    std::optional<std::string> imageBehind(const std::string& device) const;

    Places places_;
    std::map<std::string, std::string> known_;
    FileDescriptor news_;
    Subscription watch_;
};

}  // namespace quibbits::session
