// quibbits-settings: shows one window of the companion, which starts it and speaks to it over an
// inherited socket. Not for starting by hand.

#include <sys/socket.h>

#include <QApplication>
#include <QFile>
#include <QSocketNotifier>
#include <QStyleFactory>
#include <array>
#include <cerrno>
#include <cstdio>
#include <map>

#include "Accessible.h"
#include "Look.h"
#include "Window.h"
#include "wire/Channel.h"
#include "wire/ViewCodec.h"

namespace quibbits::window {
namespace {

constexpr int channel = 3;
constexpr int otherVersion = 3;  // the exit status

void send(const Json& json) {
    const std::string bytes = views::packed(json.dump());
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count =
            ::send(channel, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return QCoreApplication::quit();
        sent += static_cast<std::size_t>(count);
    }
}

void say(const char* word) {
    Json json;
    json.set(word, true);
    send(json);
}

/// What the companion says, as the window's doings.
class Listener {
public:
    explicit Listener(Window& window) : window_(window) {}

    /// False when the other end has gone or talks nonsense.
    bool receive() {
        std::array<char, 65536> bytes;
        const ssize_t count = recv(channel, bytes.data(), bytes.size(), MSG_DONTWAIT);
        if (count < 0 && (errno == EAGAIN || errno == EINTR)) return true;
        if (count <= 0 || !unpacker_.add(bytes.data(), static_cast<std::size_t>(count))) {
            return false;
        }
        while (auto message = unpacker_.next()) heed(*message);
        return true;
    }

private:
    void heed(const views::Message& message) {
        if (const auto* picture = std::get_if<views::NumberedPicture>(&message)) {
            pictures_[picture->number] = picture->image;
            return;
        }
        const auto json = Json::parse(std::get<std::string>(message));
        if (!json) return;
        if (const Json* spec = json.value->find("window")) {
            const Json* version = json.value->find("protocol");
            if (!version || *version != Json(views::protocolVersion)) {
                std::fputs("quibbits-settings: another version of quibbits started it\n", stderr);
                return QCoreApplication::exit(otherVersion);
            }
            window_.begin(views::readWindowSpec(*spec));
        }
        if (const Json* dark = json.value->find("dark")) {
            const auto* isDark = dark->as<bool>();
            wear(window_, isDark && *isDark);
        }
        if (const Json* tree = json.value->find("tree")) showTree(*tree);
        if (json.value->find("front")) window_.bringToFront();
    }

    void showTree(const Json& json) {
        auto tree = views::readView(json, [this](std::uint64_t number) {
            const auto known = pictures_.find(number);
            return known == pictures_.end() ? Image{} : known->second;
        });
        if (tree) window_.showTree(*std::move(tree));
    }

    Window& window_;
    views::Unpacker unpacker_;
    std::map<std::uint64_t, Image> pictures_;
};

/// Where the session has no bus the toolkit would start one that nobody ends, and note it down in
/// the user's home.
void startNoBus() {
    const QString usual = qEnvironmentVariable("XDG_RUNTIME_DIR") + "/bus";
    if (!qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") && !QFile::exists(usual)) {
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    }
}

}  // namespace
}  // namespace quibbits::window

int main(int count, char** arguments) {
    using namespace quibbits;
    sockaddr address{};
    socklen_t length = sizeof address;
    if (getsockname(window::channel, &address, &length) != 0 || address.sa_family != AF_UNIX) {
        std::fputs("quibbits-settings is started by quibbits\n", stderr);
        return 2;
    }
    window::startNoBus();
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QApplication application(count, arguments);
    QApplication::setApplicationName("quibbits");
    QApplication::setDesktopFileName("quibbits");
    QIcon drawn;  // where the desktop's theme does not have it: beside a build, or in a moved tree
    for (const char* place :
         {"/../icons/quibbits-48.png", "/../../share/icons/hicolor/48x48/apps/quibbits.png"}) {
        const QString file = QCoreApplication::applicationDirPath() + place;
        if (QFile::exists(file)) drawn.addFile(file);
    }
    QApplication::setWindowIcon(QIcon::fromTheme("quibbits", drawn));
    window::tellAssistivePrograms();
    window::Window window([](const views::Action& action) { window::send(write(action)); });
    window.onShown = [] { window::say("shown"); };
    window.onClosed = [] { window::say("closed"); };
    window::Listener listener(window);
    QSocketNotifier notifier(window::channel, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &window, [&] {
        if (!listener.receive()) {
            notifier.setEnabled(false);
            QCoreApplication::quit();
        }
    });
    return QApplication::exec();
}
