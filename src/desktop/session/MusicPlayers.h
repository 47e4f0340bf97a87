#pragma once
// What music players report on the session's bus. Every player that speaks MPRIS is heard; none is
// ever called.

#include <functional>
#include <map>
#include <string>

#include "desktop/session/Bus.h"

namespace quibbits::session {

class MusicPlayers {
public:
    explicit MusicPlayers(Bus& session);

    /// "Playing", "Paused" or "Stopped". A player that leaves is "Stopped", where it was the last
    /// to report or played.
    std::function<void(const std::string&)> onReport;

private:
    void heardChange(sd_bus_message* signal);
    void heardOwner(sd_bus_message* signal);
    void leave(const std::string& connection);
    void report(const std::string& state);

    std::map<std::string, std::string> states_;  // the last of each, by its connection to the bus
    std::string last_;                           // the connection that reported last
    Subscription changes_;
    Subscription owners_;
    Subscription ends_;
};

}  // namespace quibbits::session
