#include "desktop/session/MusicPlayers.h"

#include <systemd/sd-bus.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/Text.h"

namespace quibbits::session {
namespace {

constexpr std::size_t mostPlayers = 64;
constexpr std::string_view start = "org.mpris.MediaPlayer2.";
constexpr const char* busName = "org.freedesktop.DBus";

/// Each is a beginning of names; some end in the number of an instance.
constexpr auto mixedPlayers = std::to_array<std::string_view>({
    "firefox",
    "librewolf",
    "waterfox",
    "floorp",
    "zen",
    "chromium",
    "chrome",
    "google-chrome",
    "brave",
    "vivaldi",
    "opera",
    "edge",
    "msedge",
    "microsoft-edge",
    "epiphany",
    "org.gnome.epiphany",
    "falkon",
    "konqueror",
    "qutebrowser",
    "plasma-browser-integration",
    "vlc",
    "mpv",
    "celluloid",
    "io.github.celluloid",
    "totem",
    "org.gnome.totem",
    "smplayer",
    "haruna",
    "org.kde.haruna",
    "dragonplayer",
    "kodi",
    "parole",
    "clapper",
    "showtime",
    "org.gnome.showtime",
    "mplayer",
    "kaffeine",
    "freetube",
    "jellyfin",
});

}  // namespace

PlayerKind kindOfPlayer(std::string_view name) {
    const std::string lower = asciiLowercase(name);
    if (lower.starts_with("kdeconnect")) return PlayerKind::remote;
    const bool mixed = std::ranges::any_of(mixedPlayers, [&](std::string_view known) {
        return lower.starts_with(known) &&
               (lower.size() == known.size() || lower[known.size()] == '.');
    });
    return mixed ? PlayerKind::mixed : PlayerKind::music;
}

MusicPlayers::MusicPlayers(Bus& session) : bus_(session) {
    changes_ = session.match(
        "type='signal',path='/org/mpris/MediaPlayer2',interface='org.freedesktop.DBus.Properties'"
        ",member='PropertiesChanged',arg0='org.mpris.MediaPlayer2.Player'",
        [this](sd_bus_message* signal) { heardChange(signal); });
    owners_ = session.match(
        "type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged'"
        ",arg0namespace='org.mpris.MediaPlayer2'",
        [this](sd_bus_message* signal) { heardOwner(signal); });
    returns_ = session.connected.subscribe([this] { learnNames(); });
    ends_ = session.lost.subscribe([this] {
        questions_.clear();
        const std::string last = std::exchange(last_, {});
        const auto players = std::exchange(players_, {});
        kinds_.clear();
        const auto found = players.find(last);
        const bool played = found != players.end() && found->second.told != "Stopped";
        if (played && onReport) onReport("Stopped");
    });
    learnNames();
}

/// Signals come from connections; only the bus knows whose they are.
void MusicPlayers::learnNames() {
    questions_.clear();
    questions_.push_back(bus_.call({.destination = busName,
                                    .path = "/org/freedesktop/DBus",
                                    .interface = busName,
                                    .member = "ListNames"},
                                   nullptr, [this](sd_bus_message* reply, const Bus::Failure&) {
                                       if (!reply) return;
                                       for (const auto& name : readTexts(reply)) {
                                           if (name.starts_with(start)) learnOwner(name);
                                       }
                                   }));
}

void MusicPlayers::learnOwner(const std::string& name) {
    if (questions_.size() > mostPlayers) return;
    questions_.push_back(bus_.call(
        {.destination = busName,
         .path = "/org/freedesktop/DBus",
         .interface = busName,
         .member = "GetNameOwner"},
        [name](sd_bus_message* call) { return sd_bus_message_append(call, "s", name.c_str()); },
        [this, name](sd_bus_message* reply, const Bus::Failure&) {
            const auto owner = reply ? readText(reply) : std::nullopt;
            if (owner) kinds_[*owner] = kindOfPlayer(name.substr(start.size()));
        }));
}

bool MusicPlayers::playsMusic(const std::string& connection) const {
    const auto kind = kinds_.find(connection);
    if (kind == kinds_.end() || kind->second == PlayerKind::music) return true;
    const auto player = players_.find(connection);
    return kind->second == PlayerKind::mixed && player != players_.end() &&
           player->second.namesAlbum;
}

void MusicPlayers::heardChange(sd_bus_message* signal) {
    const char* const sender = sd_bus_message_get_sender(signal);
    readText(signal);  // the interface
    const auto changed = readDictionary(signal);
    if (!sender) return;
    if (players_.size() >= mostPlayers && !players_.contains(sender)) players_.clear();
    Player& player = players_[sender];
    const auto state = valueOf<std::string>(changed, "PlaybackStatus");
    const bool hasState =
        state && (*state == "Playing" || *state == "Paused" || *state == "Stopped");
    if (hasState) player.state = *state;
    if (changed.contains("Metadata")) {
        player.namesAlbum =
            !valueOf<std::string>(changed, "Metadata/xesam:album").value_or("").empty();
    }
    const bool wasPlaying = player.told == "Playing";
    if (!playsMusic(sender)) {
        if (wasPlaying) report(sender, "Stopped");
    } else if (hasState || (player.state == "Playing" && !wasPlaying)) {
        report(sender, player.state);
    }
}

void MusicPlayers::heardOwner(sd_bus_message* signal) {
    const auto name = readText(signal);
    const auto former = readText(signal);
    const auto owner = readText(signal);
    if (former && !former->empty()) leave(*former);
    if (!name || !owner || owner->empty() || !name->starts_with(start)) return;
    if (kinds_.size() >= mostPlayers) kinds_.clear();
    kinds_[*owner] = kindOfPlayer(name->substr(start.size()));
}

void MusicPlayers::leave(const std::string& connection) {
    kinds_.erase(connection);
    const auto found = players_.find(connection);
    if (found == players_.end()) return;
    const std::string told = found->second.told;
    players_.erase(found);
    const bool wasLast = last_ == connection;
    if (wasLast) last_.clear();
    const bool matters = told == "Playing" || (wasLast && !told.empty() && told != "Stopped");
    if (matters && onReport) onReport("Stopped");
}

void MusicPlayers::report(const std::string& connection, const std::string& state) {
    players_[connection].told = state;
    last_ = connection;
    if (onReport) onReport(state);
}

}  // namespace quibbits::session
