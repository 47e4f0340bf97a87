#pragma once
// What music players report on the session's bus. Every player that speaks MPRIS is heard; none is
// ever called. What browsers and players of films play counts as music only where they name an
// album, as they do for songs and not for films; what phones play is not heard here at all.

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "desktop/session/Bus.h"
#include "desktop/session/BusValues.h"

namespace quibbits::session {

/// What may be made of a player, by its name on the bus behind "org.mpris.MediaPlayer2.".
enum class PlayerKind {
    music,
    mixed,   // plays films as well as songs
    remote,  // speaks for another device
};
PlayerKind kindOfPlayer(std::string_view name);

class MusicPlayers {
public:
    explicit MusicPlayers(Bus& session);

    /// "Playing", "Paused" or "Stopped". A player that leaves, or goes over to a film, is
    /// "Stopped", where it was the last to report or played.
    std::function<void(const std::string&)> onReport;

private:
    struct Player {
        std::string state;  // as it says; empty before its first word
        std::string told;   // the last that was reported of it
        bool namesAlbum = false;
    };
    void learnNames();
    void learnOwner(const std::string& name);
    void heardChange(sd_bus_message* signal);
    void heardOwner(sd_bus_message* signal);
    void leave(const std::string& connection);
    void report(const std::string& connection, const std::string& state);
    bool playsMusic(const std::string& connection) const;

    Bus& bus_;
    std::map<std::string, Player> players_;    // by their connections to the bus
    std::map<std::string, PlayerKind> kinds_;  // likewise
    std::string last_;                         // the connection that reported last
    std::vector<Subscription> questions_;
    Subscription changes_;
    Subscription owners_;
    Subscription returns_;
    Subscription ends_;
};

}  // namespace quibbits::session
