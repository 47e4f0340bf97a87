#pragma once
// Watches the battery and the charger. Shared by all creatures; knows nothing of them.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/Lifetime.h"
#include "platform/Machine.h"
#include "platform/RunLoop.h"
#include "platform/UserDefaults.h"

namespace quibbits {

class Power {
public:
    /// Holds true values from the start. "QuibPowerScript" plays fake steps instead of the real
    /// readings, "QuibPowerStep" seconds apart.
    Power(Machine& machine, RunLoop& loop, const UserDefaults& defaults);

    /// Charge in percent; 100 on a machine without a battery.
    int level() const { return reading_.level; }
    /// Mains power is connected; true on a machine without a battery.
    bool charging() const { return reading_.charging; }

    /// The level or the charger changed.
    std::function<void()> onChange;

private:
    struct Reading {
        int level = 100;
        bool charging = false;
        bool operator==(const Reading&) const = default;
    };
    void refresh();
    Reading read() const;
    void play(std::vector<std::string> pieces, Seconds step, std::size_t index);

    Machine& machine_;
    RunLoop& loop_;
    Reading reading_;
    std::optional<Reading> fake_;
    Subscription changes_;
    Lifetime lifetime_;
};

}  // namespace quibbits
