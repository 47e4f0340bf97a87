#include "desktop/LinuxComputer.h"

#include <cstdio>
#include <utility>

#include "desktop/BackgroundThread.h"
#include "desktop/FolderWatch.h"
#include "desktop/files/DefaultsFile.h"
#include "desktop/files/DiskFiles.h"
#include "desktop/files/DiskResources.h"
#include "desktop/files/UserFolders.h"
#include "desktop/session/AccessibilityStatus.h"
#include "desktop/session/BusNotifications.h"
#include "desktop/session/DesktopIcons.h"
#include "desktop/session/LinuxMachine.h"
#include "desktop/session/MountedVolumes.h"
#include "desktop/session/PortalAppearance.h"
#include "desktop/session/SessionServices.h"
#include "desktop/session/TrayIcon.h"
#include "desktop/windows/ProcessWindows.h"
#include "desktop/words/DesktopWords.h"
#include "desktop/x11/CopiedFiles.h"
#include "desktop/x11/SystemTray.h"
#include "desktop/x11/XDock.h"
#include "desktop/x11/XHotKeys.h"
#include "desktop/x11/XKeyboard.h"
#include "desktop/x11/XPanels.h"
#include "desktop/x11/XWindowList.h"
#include "desktop/x11/XWorkspace.h"
#include "layers/LayerEngine.h"
#include "menus/ToolTip.h"
#include "raster/Painter.h"

namespace quibbits {
namespace {

std::vector<std::filesystem::path> withUsersFirst(std::vector<std::filesystem::path> folders) {
    folders.insert(folders.begin(), DiskResources::userSheets());
    return folders;
}

class DesktopText final : public TextRuler {
public:
    std::string worded(const std::string& text) const override { return words::worded(text); }
};

}  // namespace

struct LinuxComputer::Parts {
    Parts(std::unique_ptr<EventRunLoop> runLoop, std::unique_ptr<x11::Connection> display,
          const Places& places)
        : loop(std::move(runLoop)),
          connection(std::move(display)),
          engine(*loop),
          screens(*connection),
          pointer(*connection, screens),
          panels(*connection, screens, pointer, engine),
          workspace(*connection),
          windowList(*connection, screens),
          dock(screens),
          defaults(
              places.defaults.empty() ? DefaultsFile::usualPlace() : places.defaults,
              [this](Job job) { loop->post(std::move(job)); },
              [this](const std::string& folder, auto changed) {
                  return watchFolder(*loop, folder, std::move(changed));
              }),
          resources(withUsersFirst(places.sheets)),
          files(DiskFiles::homeTrash(),
                [this](const std::string& folder, auto changed) {
                    return watchFolder(*loop, folder, std::move(changed));
                }),
          volumes(*loop, {.system = places.system}),
          hotKeys(*connection),
          keyboard(*connection),
          sessionBus(*loop, {.kind = session::Bus::Kind::session, .address = places.sessionBus}),
          systemBus(*loop, {.kind = session::Bus::Kind::system, .address = places.systemBus}),
          machine(*loop, {.session = sessionBus, .system = systemBus},
                  {.system = places.system, .devices = places.devices}),
          notifications(*loop, sessionBus),
          appearance(sessionBus),
          accessibility(sessionBus),
          copiedFiles(*connection),
          fileBrowser(*loop, sessionBus,
                      {.screen = [this] { return screenPixels(); },
                       .toPoints = [this](Rect r) { return points(r); },
                       .copied = [this](auto done) { copiedFiles.read(std::move(done)); }}),
          systemTray(*connection, screens, pointer),
          statusItem(
              *loop, sessionBus,
              {.screens = screens,
               .pointer = pointer,
               .dock = dock,
               .pointOf = [this](int x, int y) { return screens.coordinates().points(x, y); },
               .openMenu = [this](Menu menu, Point at) { panels.openMenu(std::move(menu), at); },
               .otherTray = &systemTray,
               .toolTip = [this](const std::string& words,
                                 Rect icon) { return toolTip(words, icon); }}),
          desktopSession(sessionBus, {.tray = [this] { return statusItem.isShown(); },
                                      .accessibility = [this] { return accessibility.isTrusted(); },
                                      .defaults = defaults,
                                      .autostart = configFolder() / "autostart",
                                      .program = session::SessionServices::ownProgram(),
                                      .inSandbox = session::SessionServices::isInSandbox()}),
          windows(*loop, ProcessWindows::usualProgram(), appearance) {
        connection->onEnd = [this] { loop->quit(); };
        screens.follow([this] { return chosenScreen(); });
        knownScreen = chosenScreen();
        choices = defaults.whenChanged([this] {
            const auto now = chosenScreen();
            if (std::exchange(knownScreen, now) != now) screens.lookAgain();
        });
        accessibility.onChange = [this] { desktopSession.changed.emit(); };
        statusItem.onPresence = [this] { desktopSession.changed.emit(); };
        statusItem.onNoTray = [] {
            std::fputs("Quibbits: there is no tray; start quibbits again to open the dial\n",
                       stderr);
        };
    }

    ~Parts() { loop->dropJobs(); }  // they hold layers, which end before their engine

    std::string chosenScreen() const { return defaults.string(chosenScreenKey).value_or(""); }
    std::shared_ptr<void> toolTip(const std::string& said, Rect icon) {
        const auto screen = screens.at(icon.center());
        if (!screen) return nullptr;
        return std::make_shared<ToolTip>(panels, text, said, ToolTip::Place{icon, screen->frame});
    }
    Size screenPixels() const {
        const auto screen = screens.main();
        if (!screen) return {};
        return {screen->frame.width * screen->scale, screen->frame.height * screen->scale};
    }
    Rect points(Rect pixels) const {
        const auto& c = screens.coordinates();
        const Point corner = c.points(pixels.minX(), pixels.maxY());
        return {corner.x, corner.y, pixels.width / c.scale, pixels.height / c.scale};
    }

    std::unique_ptr<EventRunLoop> loop;
    std::unique_ptr<x11::Connection> connection;
    LayerEngine engine;
    x11::XScreens screens;
    x11::XPointer pointer;
    x11::XPanels panels;
    x11::XWorkspace workspace;
    x11::XWindowList windowList;
    x11::XDock dock;
    DefaultsFile defaults;
    DiskResources resources;
    DesktopText text;
    DiskFiles files;
    session::MountedVolumes volumes;
    x11::XHotKeys hotKeys;
    x11::XKeyboard keyboard;
    BackgroundThread background;  // ends before what its jobs read
    session::Bus sessionBus;
    session::Bus systemBus;
    session::LinuxMachine machine;
    session::BusNotifications notifications;
    session::PortalAppearance appearance;
    session::AccessibilityStatus accessibility;
    x11::CopiedFiles copiedFiles;
    session::DesktopIcons fileBrowser;
    x11::SystemTray systemTray;
    session::TrayIcon statusItem;
    session::SessionServices desktopSession;
    ProcessWindows windows;
    std::string knownScreen;  // that the user chose, when last looked
    Subscription choices;
};

LinuxComputer::Result LinuxComputer::start(Places places) {
    auto loop = std::make_unique<EventRunLoop>();
    loop->quitOnSignals();
    auto connection = x11::Connection::open(*loop, places.display);
    if (!connection) return {.failure = "there is no X display to show the creatures on"};
    auto parts = std::make_unique<Parts>(std::move(loop), std::move(connection), places);
    if (!parts->panels.isUsable()) return {.failure = "the X display has no see-through windows"};
    return {.computer = std::unique_ptr<LinuxComputer>(new LinuxComputer(std::move(parts)))};
}

LinuxComputer::LinuxComputer(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}
LinuxComputer::~LinuxComputer() = default;

EventRunLoop& LinuxComputer::loop() {
    return *parts_->loop;
}
Panels& LinuxComputer::panels() {
    return parts_->panels;
}
views::ViewWindows& LinuxComputer::windows() {
    return parts_->windows;
}
Computer LinuxComputer::computer(Random& random) {
    return {.runLoop = *parts_->loop,
            .random = random,
            .defaults = parts_->defaults,
            .screens = parts_->screens,
            .pointer = parts_->pointer,
            .workspace = parts_->workspace,
            .windows = parts_->windowList,
            .dock = parts_->dock,
            .fileBrowser = parts_->fileBrowser,
            .accessibility = parts_->accessibility,
            .machine = parts_->machine,
            .notifications = parts_->notifications,
            .statusItem = parts_->statusItem,
            .appearance = parts_->appearance,
            .session = parts_->desktopSession,
            .files = parts_->files,
            .volumes = parts_->volumes,
            .background = parts_->background,
            .hotKeys = parts_->hotKeys,
            .keyboard = parts_->keyboard,
            .resources = parts_->resources,
            .text = parts_->text};
}

void LinuxComputer::run() {
    parts_->loop->run();
    parts_->defaults.flush();
}

}  // namespace quibbits
