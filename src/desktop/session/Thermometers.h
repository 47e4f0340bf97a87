#pragma once
// How hot the machine runs: the kernel's thermal zones against their trip points, and the sensors
// of its chips against their own limits. The kernel tells nobody of a change, so they are read now
// and then, but only while somebody wants to know. One reading is no news: a rise counts when the
// next reading confirms it, a fall when it is clear of the limit.

#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include "platform/Machine.h"
#include "platform/RunLoop.h"

namespace quibbits::session {

/// A file with a temperature, and the temperatures from which each state holds, all in thousandths
/// of a degree Celsius.
struct Thermometer {
    struct Limits {
        std::optional<int> fair;      // the kernel begins to slow the machine
        std::optional<int> serious;   // without a limit of its own, close to critical
        std::optional<int> critical;  // the machine turns itself off
    };
    std::filesystem::path input;
    Limits limits;
    std::filesystem::path power;  // tells whether the device sleeps; reading would wake it
    std::filesystem::path fault;  // tells that nothing is connected, or broken
    std::filesystem::path alarm;  // without it nothing that this tells is critical
};

/// Every thermometer under class/thermal and class/hwmon that has a sensible limit. Chips of boards
/// are left out: what is connected to them, and what their limits are, nobody knows.
std::vector<Thermometer> thermometersIn(const std::filesystem::path& sys);
/// What one temperature means.
ThermalState stateAt(int temperature, const Thermometer::Limits& limits);

/// What the readings of one thermometer amount to.
class Heat {
public:
    /// The next reading, with its meaning at that temperature and at one that is a little higher.
    struct Reading {
        int temperature = 0;
        ThermalState state = ThermalState::nominal;
        ThermalState stateIfWarmer = ThermalState::nominal;
    };
    ThermalState take(const Reading& reading);

private:
    ThermalState held_ = ThermalState::nominal;
    ThermalState last_ = ThermalState::nominal;
    std::optional<int> first_;
    bool moves_ = false;  // one that always says the same is stuck
};

class Thermometers {
public:
    Thermometers(RunLoop& loop, std::filesystem::path sys);

    /// As last read, at the latest now; the hottest of all decides.
    ThermalState state();
    /// Reads now, and again every half minute, until told to stop.
    void start();
    void stop();

    std::function<void()> onChange;

private:
    struct Watched {
        Thermometer thermometer;
        Heat heat;
    };
    void read();
    ThermalState hottest();
    void findAll();

    RunLoop& loop_;
    std::filesystem::path sys_;
    std::vector<Watched> watched_;
    int readingsLeft_ = 0;               // before they are looked for anew
    std::optional<ThermalState> state_;  // none before the first reading
    Instant lastReading_ = 0;
    Timer timer_;
};

}  // namespace quibbits::session
