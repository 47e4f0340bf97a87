#pragma once
// Watches the user and the machine: absence, long stretches of work, cameras, heat, the network and
// music. Shared by all creatures; knows nothing of them. Told by closures that are set afterwards;
// the state changes whether or not one is set.

#include <functional>
#include <optional>
#include <string>

#include "platform/Lifetime.h"
#include "platform/Machine.h"
#include "platform/Pointer.h"
#include "platform/RunLoop.h"
#include "platform/UserDefaults.h"

namespace quibbits {

class Senses {
public:
    Senses(Machine& machine, const Pointer& pointer, RunLoop& loop, const UserDefaults& defaults);

    bool away() const { return away_; }
    /// The last report of any music player said that it plays.
    bool musicPlaying() const { return musicPlaying_; }
    bool cameraOn() const { return cameraOn_; }
    ThermalState thermalState() const { return machine_.thermalState(); }

    std::function<void()> onAway;       // the user has just gone idle
    std::function<void()> onBack;       // the user has just come back
    std::function<void()> onBreakTime;  // the user has worked long enough
    std::function<void(bool on)> onCamera;
    std::function<void()> onHeat;
    std::function<void(bool online)> onOnline;

private:
    struct Check {
        Instant at = 0;
        Date date;
    };
    void checkIdle();
    void checkSleep();
    void checkPresence(Seconds idle);
    void checkBreak();
    void camerasChanged();
    void networkReported(bool satisfied);

    Machine& machine_;
    const Pointer& pointer_;
    RunLoop& loop_;
    const UserDefaults& defaults_;

    bool away_ = false;
    bool musicPlaying_ = false;
    bool cameraOn_ = false;
    Instant activeSince_;
    Check lastCheck_;
    std::optional<bool> online_;
    Timer idleTimer_;
    Subscription heat_;
    Subscription network_;
    Subscription cameras_;
    Subscription music_;
};

}  // namespace quibbits
