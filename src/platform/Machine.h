#pragma once
// What the machine tells of itself: power, heat, network, cameras, music.

#include <optional>
#include <string>
#include <vector>

#include "platform/Signal.h"

namespace quibbits {

/// One battery or other source, as the system describes it. Fields the system leaves out are none.
struct PowerSource {
    std::optional<int> currentCapacity;
    std::optional<int> maxCapacity;
    std::optional<std::string> state;  // "AC Power" or "Battery Power"
    bool operator==(const PowerSource&) const = default;
};

enum class ThermalState { nominal, fair, serious, critical };

class Machine {
public:
    virtual ~Machine() = default;
    /// Every source in the system's order; empty without a battery.
    virtual std::vector<PowerSource> powerSources() const = 0;
    virtual ThermalState thermalState() const = 0;
    /// For each camera known at launch, whether another program uses it now.
    virtual std::vector<bool> camerasInUse() const = 0;

    Signal<> powerChanged;
    Signal<> thermalStateChanged;
    Signal<> camerasChanged;
    /// True when the network satisfies; the first report comes soon after the first listener.
    Signal<bool> networkReported;
    /// A music player's report: its state word, or none when it gave none.
    Signal<std::optional<std::string>> playerReported;
};

}  // namespace quibbits
