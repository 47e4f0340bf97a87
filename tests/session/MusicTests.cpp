// Which of the session's players play music.

#include <gmock/gmock.h>
#include <systemd/sd-bus.h>

#include "BusTest.h"
#include "desktop/session/MusicPlayers.h"

namespace quibbits {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* path = "/org/mpris/MediaPlayer2";

class Music : public BusTest {
protected:
    void listen() {
        bus.emplace(loop, place());
        players.emplace(*bus);
        players->onReport = [this](const std::string& state) { told.push_back(state); };
        settle(*bus);
        settle(*bus);
    }
    /// A player tells of its state, and of what it plays where an album is given.
    void say(FakeService& player, const char* state, const char* album = nullptr) {
        player.emit(path, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                    [&](sd_bus_message* signal) {
                        sd_bus_message_append(signal, "s", "org.mpris.MediaPlayer2.Player");
                        sd_bus_message_open_container(signal, 'a', "{sv}");
                        if (album) {
                            sd_bus_message_append(signal, "{sv}", "Metadata", "a{sv}", 2,
                                                  "xesam:title", "s", "A title", "xesam:album", "s",
                                                  album);
                        }
                        if (state) {
                            sd_bus_message_append(signal, "{sv}", "PlaybackStatus", "s", state);
                        }
                        sd_bus_message_close_container(signal);
                        sd_bus_message_append(signal, "as", 0);
                    });
        settle(*bus);
    }

    std::optional<session::Bus> bus;
    std::optional<session::MusicPlayers> players;
    std::vector<std::string> told;
};

TEST_F(Music, AFilmInABrowserIsNoneAndASongThereIs) {
    daemon.start();
    auto browser = serve("org.mpris.MediaPlayer2.chromium.instance42");  // before us
    letPass(0.1);
    listen();
    auto films = serve("org.mpris.MediaPlayer2.vlc");
    auto phone = serve("org.mpris.MediaPlayer2.kdeconnect.mpris_000001");
    auto songs = serve("org.mpris.MediaPlayer2.rhythmbox");
    settle(*bus);
    say(*browser, "Playing");
    say(*browser, "Playing", "");
    say(*films, "Playing");
    say(*phone, "Playing", "An album");
    EXPECT_THAT(told, IsEmpty());
    say(*browser, nullptr, "An album");  // the next thing in the list is a song
    EXPECT_THAT(told, ElementsAre("Playing"));
    say(*browser, nullptr, "");
    EXPECT_THAT(told, ElementsAre("Playing", "Stopped"));
    end(browser);
    settle(*bus);
    say(*films, "Playing", "A record");
    say(*songs, "Paused");
    EXPECT_THAT(told, ElementsAre("Playing", "Stopped", "Playing", "Paused"));
}

TEST(APlayer, IsKnownByItsName) {
    using enum session::PlayerKind;
    for (const auto& [name, kind] : {
             std::pair{"rhythmbox", music},
             std::pair{"spotify", music},
             std::pair{"elisa", music},
             std::pair{"zenith", music},
             std::pair{"firefox", mixed},
             std::pair{"firefox.instance_1_2", mixed},
             std::pair{"Chromium.instance7", mixed},
             std::pair{"mpv", mixed},
             std::pair{"plasma-browser-integration", mixed},
             std::pair{"kdeconnect.mpris_1", remote},
         }) {
        EXPECT_EQ(session::kindOfPlayer(name), kind) << name;
    }
}

}  // namespace
}  // namespace quibbits
