#pragma once
// How hot the machine runs: the kernel's thermal zones against their trip points, and the sensors
// of its chips against their own limits. The kernel tells nobody of a change, so they are read now
// and then, but only while somebody wants to know.

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
        std::optional<int> serious;   // without a limit of its own, half-way to critical
        std::optional<int> critical;  // the machine turns itself off
    };
    std::filesystem::path input;
    Limits limits;
    std::filesystem::path power;  // tells whether the device sleeps; reading would wake it
};

/// Every thermometer under class/thermal and class/hwmon that has a sensible limit.
std::vector<Thermometer> thermometersIn(const std::filesystem::path& sys);
/// What one temperature means.
ThermalState stateAt(int temperature, const Thermometer::Limits& limits);

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
    void read();
    ThermalState hottest();
    void findAll();

    RunLoop& loop_;
    std::filesystem::path sys_;
    std::vector<Thermometer> thermometers_;
    int readingsLeft_ = 0;               // before they are looked for anew
    std::optional<ThermalState> state_;  // none before the first reading
    Timer timer_;
};

}  // namespace quibbits::session
