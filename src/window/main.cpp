// quibbits-settings: shows one window of the companion, which starts it and speaks to it over an
// inherited socket. Not for starting by hand.

#include <sys/socket.h>

#include <QApplication>
#include <QScreen>
#include <QSocketNotifier>
#include <QStyleFactory>
#include <QVBoxLayout>
#include <array>
#include <cerrno>
#include <cstdio>
#include <map>

#include "Look.h"
#include "ViewTree.h"
#include "wire/Channel.h"
#include "wire/ViewCodec.h"

namespace quibbits::window {
namespace {

constexpr int channel = 3;

constexpr const char* lookSheet = R"(
QFrame#section { background: palette(base); border: 1px solid palette(mid); border-radius: 9px; }
QFrame#sidebar { background: palette(base); border: none; border-right: 1px solid palette(mid); }
QFrame#hairline { background: palette(mid); border: none; }
QScrollArea, QScrollArea > QWidget > QWidget { background: transparent; }
QScrollBar:vertical { width: 10px; background: transparent; margin: 2px; }
QScrollBar::handle:vertical { background: palette(dark); border-radius: 3px; min-height: 30px; }
QScrollBar::add-line, QScrollBar::sub-line { height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
QPushButton, QComboBox { padding: 5px 14px; border-radius: 7px; border: 1px solid palette(mid);
    background: palette(button); color: palette(button-text); }
QPushButton:hover, QComboBox:hover { border-color: palette(highlight); }
QPushButton:focus, QComboBox:focus { border-color: palette(highlight); }
QPushButton:pressed { background: palette(midlight); }
QPushButton:disabled, QComboBox:disabled { color: palette(dark); }
QPushButton:flat { border: none; background: transparent; padding: 2px 6px; }
QPushButton#primary { background: palette(highlight); color: palette(highlighted-text);
    border-color: palette(highlight); }
QPushButton#destructive { color: #c0392b; }
QToolButton#segment { padding: 5px 14px; border: 1px solid palette(mid);
    background: palette(button); }
QToolButton#segment:checked { background: palette(highlight); color: palette(highlighted-text);
    border-color: palette(highlight); }
QComboBox::drop-down { border: none; width: 22px; }
QTabBar::tab { padding: 7px 18px; margin: 0 2px; border-radius: 7px; }
QTabBar::tab:selected { background: palette(highlight); color: palette(highlighted-text); }
QTabBar::tab:hover:!selected { background: palette(midlight); }
)";

void send(const views::Action& action) {
    const std::string bytes = views::packed(write(action).dump());
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count =
            ::send(channel, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return QCoreApplication::quit();
        sent += static_cast<std::size_t>(count);
    }
}

class Window final : public QWidget {
public:
    Window() : tree_(send) {
        box_ = new QVBoxLayout(this);
        box_->setContentsMargins(0, 0, 0, 0);
    }

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
        if (const Json* spec = json.value->find("window")) begin(views::readWindowSpec(*spec));
        if (const Json* tree = json.value->find("tree")) showTree(*tree);
        if (json.value->find("front")) bringToFront();
    }

    void begin(const views::WindowSpec& spec) {
        qApp->setPalette(quibbits::window::palette(spec.dark));
        qApp->setStyleSheet(lookSheet);
        setWindowTitle(QString::fromStdString(spec.title));
        const QSize size(static_cast<int>(spec.size.width), static_cast<int>(spec.size.height));
        if (spec.resizable) {
            resize(size);
            setMinimumSize(560, 420);
        } else {
            setFixedSize(size);
        }
        const QRect room = screen()->availableGeometry();
        move(room.center() - QPoint(size.width() / 2, size.height() / 2));
    }

    void showTree(const Json& json) {
        auto tree = views::readView(json, [this](std::uint64_t number) {
            const auto known = pictures_.find(number);
            return known == pictures_.end() ? Image{} : known->second;
        });
        if (!tree) return;
        if (tree_.show(*std::move(tree))) {
            box_->addWidget(tree_.top());
            tree_.top()->setVisible(true);
        }
        if (!isVisible()) bringToFront();
    }

    void bringToFront() {
        setWindowState((windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
        show();
        raise();
        activateWindow();
    }

    ViewTree tree_;
    QVBoxLayout* box_;
    views::Unpacker unpacker_;
    std::map<std::uint64_t, Image> pictures_;
};

}  // namespace
}  // namespace quibbits::window

int main(int count, char** arguments) {
    sockaddr address{};
    socklen_t length = sizeof address;
    if (getsockname(3, &address, &length) != 0 || address.sa_family != AF_UNIX) {
        std::fputs("quibbits-settings is started by quibbits\n", stderr);
        return 2;
    }
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QApplication application(count, arguments);
    QApplication::setApplicationName("quibbits");
    QApplication::setDesktopFileName("quibbits");
    // Not installed, it lies beside the icons that were drawn for it.
    const QIcon drawn(QCoreApplication::applicationDirPath() + "/../icons/quibbits-48.png");
    QApplication::setWindowIcon(QIcon::fromTheme("quibbits", drawn));
    quibbits::window::Window window;
    QSocketNotifier notifier(quibbits::window::channel, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &window, [&] {
        if (!window.receive()) {
            notifier.setEnabled(false);
            QCoreApplication::quit();
        }
    });
    return QApplication::exec();
}
