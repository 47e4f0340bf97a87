#include "desktop/session/MusicPlayers.h"

#include <systemd/sd-bus.h>

#include <utility>

#include "desktop/session/BusValues.h"

namespace quibbits::session {
namespace {

constexpr std::size_t mostPlayers = 64;

}  // namespace

MusicPlayers::MusicPlayers(Bus& session) {
    changes_ = session.match(
        "type='signal',path='/org/mpris/MediaPlayer2',interface='org.freedesktop.DBus.Properties'"
        ",member='PropertiesChanged',arg0='org.mpris.MediaPlayer2.Player'",
        [this](sd_bus_message* signal) { heardChange(signal); });
    owners_ = session.match(
        "type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged'"
        ",arg0namespace='org.mpris.MediaPlayer2'",
        [this](sd_bus_message* signal) { heardOwner(signal); });
    ends_ = session.lost.subscribe([this] {
        const std::string last = std::exchange(last_, {});
        if (!last.empty() && states_[last] != "Stopped") report("Stopped");
        states_.clear();
    });
}

void MusicPlayers::heardChange(sd_bus_message* signal) {
    const char* const sender = sd_bus_message_get_sender(signal);
    readText(signal);  // the interface
    const auto state = valueOf<std::string>(readDictionary(signal), "PlaybackStatus");
    if (!sender || !state || (*state != "Playing" && *state != "Paused" && *state != "Stopped")) {
        return;
    }
    if (states_.size() >= mostPlayers && !states_.contains(sender)) states_.clear();
    states_[sender] = *state;
    last_ = sender;
    report(*state);
}

void MusicPlayers::heardOwner(sd_bus_message* signal) {
    readText(signal);  // the name
    const auto former = readText(signal);
    if (former && !former->empty()) leave(*former);
}

void MusicPlayers::leave(const std::string& connection) {
    const auto found = states_.find(connection);
    if (found == states_.end()) return;
    const std::string state = found->second;
    states_.erase(found);
    const bool wasLast = last_ == connection;
    if (wasLast) last_.clear();
    if (state == "Playing" || (wasLast && state != "Stopped")) report("Stopped");
}

void MusicPlayers::report(const std::string& state) {
    if (onReport) onReport(state);
}

}  // namespace quibbits::session
