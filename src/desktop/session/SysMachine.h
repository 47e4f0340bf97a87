#pragma once
// The machine as the kernel's files tell it: batteries and chargers from class/power_supply. Heat,
// cameras, network and players are not told here: the temperature counts as ordinary, there is no
// camera, and no report comes.

#include <filesystem>

#include "platform/Machine.h"

namespace quibbits {

class SysMachine final : public Machine {
public:
    /// The folder that holds class/; /sys but in tests.
    explicit SysMachine(std::filesystem::path root = "/sys");

    std::vector<PowerSource> powerSources() const override;
    ThermalState thermalState() const override { return ThermalState::nominal; }
    std::vector<bool> camerasInUse() const override { return {}; }

private:
    std::filesystem::path root_;
};

}  // namespace quibbits
