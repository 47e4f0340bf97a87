#pragma once
// Batteries and chargers: from UPower while it runs, else from the kernel's own files, read again
// whenever the kernel tells of a change. Nothing is polled.

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "desktop/session/Bus.h"
#include "desktop/session/BusObject.h"
#include "desktop/session/Netlink.h"
#include "platform/Machine.h"

namespace quibbits::session {

/// The batteries under class/power_supply as one source, without those of mice and headsets. A
/// value that makes no sense is left out. Mains power that is connected is "AC Power"; without any
/// mains supply batteries are on it while none discharges.
std::vector<PowerSource> batteriesIn(const std::filesystem::path& sys);

class PowerSupplies {
public:
    /// Knows what the files tell from the start; UPower's word comes later.
    PowerSupplies(EventRunLoop& loop, Bus& system, std::filesystem::path sys);

    /// UPower's one combined battery, or that of the files.
    const std::vector<PowerSource>& sources() const { return sources_; }

    std::function<void()> onChange;

private:
    void refresh();
    void readFiles();
    void readDevices();
    void heardKernel(std::string_view packet);
    void take(std::vector<PowerSource> sources);
    std::optional<BusDictionary> battery() const;

    EventRunLoop& loop_;
    Bus& bus_;
    std::filesystem::path sys_;
    std::vector<PowerSource> sources_;
    BusObject upower_;
    BusObject display_;  // all batteries in one
    Subscription question_;
    std::vector<std::unique_ptr<BusObject>> devices_;  // only where the display device is missing
    std::optional<Netlink> kernel_;                    // only without UPower
    Timer settle_;
};

}  // namespace quibbits::session
