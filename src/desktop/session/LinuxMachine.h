#pragma once
// The machine's news on Linux, each from its own source. Every source may be missing, go and come
// back: the answer is then the ordinary one of a machine without it.

#include <filesystem>

#include "desktop/session/Cameras.h"
#include "desktop/session/MusicPlayers.h"
#include "desktop/session/NetworkPath.h"
#include "desktop/session/PowerSupplies.h"
#include "desktop/session/Thermometers.h"
#include "platform/Machine.h"

namespace quibbits::session {

class LinuxMachine final : public Machine {
public:
    struct Roots {
        std::filesystem::path system = "/sys";   // holds class/
        std::filesystem::path devices = "/dev";  // holds the cameras
    };
    struct Buses {
        Bus& session;
        Bus& system;
    };
    LinuxMachine(EventRunLoop& loop, Buses buses, const Roots& roots);

    std::vector<PowerSource> powerSources() const override { return power_.sources(); }
    ThermalState thermalState() const override { return heat_.state(); }
    std::vector<bool> camerasInUse() const override { return cameras_.inUse(); }

private:
    void lookForListeners();
    void reportNetwork(bool satisfied);

    PowerSupplies power_;
    mutable Thermometers heat_;  // read when first asked
    NetworkPath network_;
    MusicPlayers players_;
    Cameras cameras_;
    bool networkIsTold_ = false;
    Subscription beforeWaiting_;
};

}  // namespace quibbits::session
