#pragma once
// A whole computer in virtual time: a desktop with a screen, a dock, windows, icons, a pointer and
// the machine's own news, all moved by a script. It implements every interface of the platform; the
// core cannot tell it from a real one.

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "layers/LayerEngine.h"
#include "platform/Computer.h"
#include "sim/SimulatedPanel.h"
#include "sim/SimulatedViewWindows.h"
#include "sim/VirtualRunLoop.h"

namespace quibbits {

/// Defaults in memory. They outlive the program that is simulated, as a file would.
class SimulatedDefaults final : public UserDefaults {
public:
    std::optional<DefaultsValue> object(std::string_view key) const override;
    std::optional<DefaultsValue> stored(std::string_view key) const override;
    void set(std::string_view key, DefaultsValue value) override;
    void remove(std::string_view key) override;
    void registerDefaults(std::map<std::string, DefaultsValue> values) override;
    Subscription whenChanged(std::function<void()> tell) override {
        return changed_.subscribe(std::move(tell));
    }

    const std::map<std::string, DefaultsValue, std::less<>>& all() const { return values_; }
    /// A stored value changed, or went away.
    std::function<void(const std::string& key, const DefaultsValue* value)> onChange;

private:
    std::map<std::string, DefaultsValue, std::less<>> values_;
    std::map<std::string, DefaultsValue, std::less<>> registered_;
    Signal<> changed_;
};

class SimulatedScreens final : public Screens {
public:
    std::optional<Screen> main() const override { return screen; }
    std::optional<Screen> at(Point) const override { return screen; }
    std::vector<std::string> names() const override { return outputs; }
    std::vector<std::string> outputs;
    std::optional<Screen> screen;
};

class SimulatedDock final : public Dock {
public:
    std::vector<Rect> panels() const override { return frames; }
    std::optional<DockPreferences> preferences() const override { return file; }
    std::vector<Rect> frames;
    std::optional<DockPreferences> file;
    std::optional<Rect> inset;  // what a dock takes that tells nobody where it is
};

class SimulatedWorkspace final : public Workspace {
public:
    std::optional<Application> frontmost() const override { return front; }
    std::vector<Application> running() const override { return applications; }
    std::optional<WebPage> page(const Application& application) const override {
        return front == application ? frontPage : std::nullopt;
    }
    std::vector<InstalledApplication> installed() const override { return catalogue; }
    void open(const std::string& address) override { opened.push_back(address); }
    std::vector<InstalledApplication> catalogue;
    std::vector<std::string> opened;
    std::optional<WebPage> frontPage;
    std::optional<Application> front;
    std::vector<Application> applications;
};

class SimulatedWindows final : public WindowList {
public:
    struct Window {
        std::string id;
        WindowInfo info;
    };
    std::vector<WindowInfo> onScreen() const override;
    std::vector<Window> windows;  // front to back
};

class SimulatedFileBrowser final : public FileBrowser {
public:
    std::optional<std::vector<DesktopIcon>> desktopIcons() override { return icons; }
    std::optional<Point> desktopPosition(const std::string& name) override;
    bool isFileManager(const std::string& id) const override { return id == "files"; }
    void readSelection(std::function<void(const FileSelection&)> done) override { done(selection); }
    FileSelection selection;
    std::map<std::string, Point> positions;
    std::optional<std::vector<DesktopIcon>> icons = std::vector<DesktopIcon>{};
};

class SimulatedAccessibility final : public Accessibility {
public:
    bool isTrusted() const override { return trusted; }
    void askForTrust() override { ++questions; }
    bool trusted = false;
    int questions = 0;
};

class SimulatedMachine final : public Machine {
public:
    std::vector<PowerSource> powerSources() const override { return sources; }
    ThermalState thermalState() const override { return heat; }
    std::vector<bool> camerasInUse() const override { return cameras; }
    std::vector<PowerSource> sources;
    ThermalState heat = ThermalState::nominal;
    std::vector<bool> cameras;
};

class SimulatedNotifications final : public Notifications {
public:
    void setCategories(std::vector<NotificationCategory> list) override { categories = list; }
    void send(NotificationRequest request,
              std::function<void(const NotificationOutcome&)> done) override;
    void removeDelivered(const std::string& identifier) override;
    void removeOffers() override;
    /// The user presses a button of a notification, or puts it away. A press that the program at
    /// hand knows nothing of, since another one asked, is heard by nobody.
    void answer(const std::string& identifier, const std::string& action);
    /// The program has ended, and with it what it knew of the notifications that are still shown.
    void programEnded() { known_.clear(); }

    std::vector<NotificationCategory> categories;
    std::map<std::string, NotificationRequest> delivered;  // with the bodies that are shown
    bool showsButtons = true;
    std::string refusal;  // not empty: every request fails with this text
    std::function<void(const NotificationRequest&)> onSend;
    std::function<void(const std::string& identifier)> onRemove;

private:
    const NotificationCategory* offerOf(const NotificationRequest& request) const;

    std::set<std::string> known_;  // by the program that runs
};

/// An icon in the upper right corner of the screen, unless a script puts it elsewhere.
class SimulatedStatusItem final : public StatusItem {
public:
    explicit SimulatedStatusItem(const Screens& screens) : screens_(screens) {}
    void show(Image picture, std::string text) override;
    void popUp(Menu menu) override;
    std::optional<Rect> frame() const override;
    bool isShown() const override { return true; }

    Image image;
    std::string toolTip;
    std::optional<Rect> place;
    std::optional<Menu> openMenu;
    std::function<void(const Menu&)> onPopUp;

private:
    const Screens& screens_;
};

class SimulatedAppearance final : public DesktopLook {
public:
    bool isDark() const override { return dark; }
    bool dark = false;
};

/// A session that says nothing of its services and cannot start programs, unless it is told.
class SimulatedSession final : public DesktopSession {
public:
    std::optional<bool> has(SessionService service) const override;
    std::optional<bool> startsProgram() const override { return starts; }
    void setStartsProgram(bool s) override { starts = s; }
    std::map<SessionService, bool> services;
    std::optional<bool> starts;
};

class SimulatedFiles final : public Files {
public:
    /// What a file is like; one that nothing is told of is empty and of an unknown age.
    struct Details {
        std::uint64_t size = 0;
        std::string contents;  // stands for the bytes: files with other contents differ
        std::optional<Date> created;
        bool operator==(const Details&) const = default;
    };
    bool exists(const std::string& path) const override { return files.contains(path); }
    bool isFolder(const std::string& path) const override;
    std::string fingerprint(const std::string& path) const override;
    std::string desktopFolder() const override { return "/home/user/Desktop"; }
    std::string downloadsFolder() const override { return "/home/user/Downloads"; }
    bool moveToTrash(const std::string& path) override;
    std::optional<std::vector<FolderEntry>> list(const std::string& folder) const override;
    bool contentsEqual(const std::string& one, const std::string& other,
                       std::stop_token stop) const override;
    std::optional<Subscription> watch(
        const std::string& folder, std::function<void(const std::string& name)> changed) override;
    /// Writes a file, and tells who watches its folder.
    void put(const std::string& path, Details details);
    std::set<std::string> files;
    std::map<std::string, Details> details;
    std::set<std::string> stubborn;    // cannot be moved
    std::set<std::string> unreadable;  // folders and files
    std::vector<std::string> trash;
    mutable int comparisons = 0;
    std::function<void(const std::string& path, bool moved)> onTrash;

private:
    void tell(const std::string& path);
    std::map<std::string, Signal<const std::string&>> watched_;
};

class SimulatedVolumes final : public Volumes {
public:
    std::optional<std::map<std::string, std::string>> images() const override { return mounts; }
    void mount(const std::string& image, const std::string& place);
    void unmount(const std::string& place);
    std::optional<std::map<std::string, std::string>> mounts = std::map<std::string, std::string>{};
};

/// Work is done in no time, in a turn of the loop of its own.
class SimulatedWorkQueue final : public WorkQueue {
public:
    explicit SimulatedWorkQueue(RunLoop& loop) : loop_(loop) {}
    void post(Work work) override {
        loop_.post([work = std::move(work)] { work({}); });
    }

private:
    RunLoop& loop_;
};

class SimulatedHotKeys final : public HotKeys {
public:
    std::optional<Subscription> hold(HotKey key, std::function<void()> pressed) override;
    /// Presses a combination. False when nobody here holds it, and it goes to the front program.
    bool press(const HotKey& key);
    bool taken = false;  // another program has every key
    int held = 0;        // how many are held now

private:
    struct Holder {
        HotKey key;
        std::function<void()> pressed;
    };
    std::vector<std::shared_ptr<Holder>> holders_;
};

/// The keys go to whoever took them last.
class SimulatedKeyboard final : public Keyboard {
public:
    Subscription take(std::function<void(WalkingKey)> pressed) override {
        return taken_.subscribe(std::move(pressed));
    }
    /// False when nobody here has the keys.
    bool press(WalkingKey key) {
        if (!isTaken()) return false;
        taken_.emit(key);
        return true;
    }
    bool isTaken() const { return taken_.hasListeners(); }

private:
    Signal<WalkingKey> taken_;
};

/// The pointer of the simulated user, and the routing of what it does.
class SimulatedPointer final : public Pointer {
public:
    explicit SimulatedPointer(const RunLoop& loop) : loop_(loop) {}
    Point location() const override { return place; }
    MouseButtons buttons() const override { return down; }
    Modifiers modifiers() const override { return keys; }
    Seconds idle() const override { return present ? 0 : loop_.now() - lastInput; }
    Seconds untouched() const override { return loop_.now() - lastMouse; }
    bool setHidden(bool h) override {
        if (h && !hideable) return false;
        hidden = h;
        return true;
    }
    PointerPicture picture() const override;
    void touch();

    Point place;
    MouseButtons down;
    Modifiers keys;
    bool hidden = false;
    bool hideable = true;
    bool present = true;  // somebody is at the computer, typing now and then
    Instant lastInput = 0;
    Instant lastMouse = 0;

private:
    const RunLoop& loop_;
};

class SimulatedComputer {
public:
    struct Settings {
        Date begin = utcDate({.year = 2026, .month = 3, .day = 2, .hour = 10});
        std::uint64_t seed = 1;
        bool painting = false;  // panels follow what would be painted; costs time
    };
    /// Resources and text are the caller's; a test may give none that draw.
    SimulatedComputer(Settings settings, Resources& resources, TextMeasure& text);
    ~SimulatedComputer();

    Computer computer();
    SimulatedPanels& panels() { return panels_; }
    /// What is on screen, the lowest first.
    const std::vector<SimulatedPanel*>& shownPanels() const { return panels_.open(); }
    /// What the user carries from one panel to another at the moment.
    const std::optional<ItemDrag>& carried() const { return panels_.carried; }

    // What the simulated user and world do. Each takes effect at once.
    void setScreen(Size size, double scale);
    /// A dock along the bottom, or none.
    void setDock(std::optional<Rect> frame);
    /// Panels along the edges of the screen.
    void setPanels(std::vector<Rect> frames);
    void movePointer(Point to);
    void press(MouseButton button);
    void release(MouseButton button);
    /// Goes to the tray's icon and clicks it.
    void clickStatusItem(MouseButton button);
    /// Chooses the line of that title from a menu that is open, and closes it. False when there is
    /// no such line or it is disabled.
    bool choose(const std::string& title);
    void touchKey() { pointer.lastInput = runLoop.now(); }
    /// From now on somebody is there, or nobody is.
    void setUserPresent(bool present);
    void setBattery(std::optional<int> level, bool charging);
    void setHeat(ThermalState state);
    void setNetwork(bool online) { machine.networkReported.emit(online); }
    void setCameras(std::vector<bool> inUse);
    void setMusic(std::optional<std::string> state) { machine.playerReported.emit(state); }
    /// Files are selected in the file manager's window, which draws them there; files without a
    /// frame are selected all the same.
    void select(std::vector<std::string> paths, const std::vector<DesktopIcon>& drawn);
    void putWindow(const std::string& id, WindowInfo info);  // new ones open in front
    void closeWindow(const std::string& id);
    void bringToFront(const Application& application);
    bool dropOnStage(DragInfo drag);  // in global coordinates

    VirtualRunLoop runLoop;
    Random random;
    SimulatedDefaults defaults;
    SimulatedScreens screens;
    SimulatedDock dock;
    SimulatedWorkspace workspace;
    SimulatedWindows windows;
    SimulatedFileBrowser fileBrowser;
    SimulatedAccessibility accessibility;
    SimulatedMachine machine;
    SimulatedNotifications notifications;
    SimulatedStatusItem statusItem;
    SimulatedAppearance appearance;
    SimulatedSession session;
    SimulatedFiles files;
    SimulatedVolumes volumes;
    SimulatedWorkQueue background;
    SimulatedHotKeys hotKeys;
    SimulatedKeyboard keyboard;
    SimulatedPointer pointer;
    SimulatedViewWindows viewWindows;
    LayerEngine layers;
    /// Presses that went through to what lies beneath.
    std::vector<Point> pressesBeneath;

private:
    SimulatedPanel* panelUnderPointer() const;
    SimulatedPanel* panelTaking(const DragInfo& drag) const;
    std::vector<std::optional<Menu>*> menus();
    void updateVisibleFrame();

    Resources& resources_;
    TextMeasure& text_;
    SimulatedPanels panels_;
};

}  // namespace quibbits
