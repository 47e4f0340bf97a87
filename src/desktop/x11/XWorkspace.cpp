#include "desktop/x11/XWorkspace.h"

#include <unistd.h>

#include <algorithm>

#include "desktop/files/InstalledApplications.h"
#include "desktop/windows/Spawn.h"
#include "desktop/x11/Properties.h"
#include "platform/Text.h"

namespace quibbits::x11 {
namespace {

constexpr std::string_view ownClass = "quibbits";  // of the windows of its other process, too

/// The second of the two texts of WM_CLASS, in lower case.
std::string classOf(std::string_view classes) {
    const auto first = classes.find('\0');
    auto name = first == std::string_view::npos ? classes : classes.substr(first + 1);
    return asciiLowercase(name.substr(0, name.find('\0')));
}

bool contains(const std::vector<Application>& list, const Application& application) {
    return std::ranges::find(list, application) != list.end();
}

}  // namespace

XWorkspace::XWorkspace(Connection& connection)
    : connection_(connection), browsers_(applicationFolders()) {
    subscription_ = connection.rootPropertyChanged.subscribe(
        [this](xcb_atom_t property) { rootChanged(property); });
    readList();
    readFront();
}

void XWorkspace::rootChanged(xcb_atom_t property) {
    const auto is = [&](Atom name) { return property == connection_.atom(name); };
    if (is(Atom::currentDesktop)) {
        spaceChanged.emit();
    } else if (is(Atom::clientList)) {
        const auto before = running_;
        readList();
        const auto now = running_;
        if (!std::ranges::all_of(now, [&](const auto& a) { return contains(before, a); })) {
            launched.emit();
        }
        if (!std::ranges::all_of(before, [&](const auto& a) { return contains(now, a); })) {
            terminated.emit();
        }
    } else if (is(Atom::activeWindow)) {
        const auto before = front_;
        readFront();
        if (front_ != before) activated.emit();
    }
}

std::vector<InstalledApplication> XWorkspace::installed() const {
    return installedApplications(applicationFolders());
}

void XWorkspace::open(const std::string& address) {
    // What begins with a dash would be an option.
    if (!address.starts_with('-')) spawnDetached({"xdg-open", address});
}

void XWorkspace::readFront() {
    front_.reset();
    const auto active = propertyOf(connection_, connection_.root(), Atom::activeWindow).number();
    if (!active || *active == XCB_NONE) return;
    if (!windows_.contains(*active)) learn({*active});
    if (const auto found = windows_.find(*active); found != windows_.end()) {
        front_ = found->second.application;
    }
}

std::optional<WebPage> XWorkspace::page(const Application& application) const {
    if (front_ != application ||
        !(browsers_.contains(application.id) || browsers_.contains(application.windowClass))) {
        return std::nullopt;
    }
    const auto active = propertyOf(connection_, connection_.root(), Atom::activeWindow).number();
    if (!active || *active == XCB_NONE) return std::nullopt;
    const Property title = propertyOf(connection_, *active, Atom::windowName);
    return WebPage{.title = std::string(title.text())};
}

void XWorkspace::readList() {
    const auto list = propertyOf(connection_, connection_.root(), Atom::clientList);
    const auto present = list.numbers();
    std::vector<xcb_window_t> fresh;
    std::ranges::copy_if(present, std::back_inserter(fresh),
                         [this](xcb_window_t window) { return !windows_.contains(window); });
    std::erase_if(windows_, [&](const auto& entry) {
        return std::ranges::find(present, entry.first) == present.end();
    });
    learn(fresh);
    running_.clear();
    for (const auto window : present) {
        const auto& [application, isDesktop] = windows_[window];
        if (!application || isDesktop || contains(running_, *application)) continue;
        running_.push_back(*application);
    }
}

void XWorkspace::learn(const std::vector<xcb_window_t>& windows) {
    struct Asked {
        PropertyRequest type, classes, applicationId, process;
    };
    std::vector<Asked> asked;
    for (const auto window : windows) {
        const auto property = [&](Atom name) {
            return PropertyRequest(connection_, window, connection_.atom(name));
        };
        asked.push_back({property(Atom::windowType),
                         PropertyRequest(connection_, window, XCB_ATOM_WM_CLASS),
                         property(Atom::gtkApplicationId), property(Atom::pid)});
    }
    for (std::size_t i = 0; i < windows.size(); ++i) {
        const auto type = asked[i].type.wait();
        const auto classes = asked[i].classes.wait();
        const auto applicationId = asked[i].applicationId.wait();
        const std::int64_t process = asked[i].process.wait().number().value_or(0);
        Known& known = windows_[windows[i]];
        known.isDesktop = type.contains(connection_.atom(Atom::typeDesktop));
        if (type.contains(connection_.atom(Atom::typeDock))) continue;
        const std::string windowClass = classOf(classes.text());
        const std::string id = asciiLowercase(applicationId.text());
        known.application = Application{.id = id.empty() ? windowClass : id,
                                        .process = process,
                                        .isSelf = process == getpid() || windowClass == ownClass,
                                        .windowClass = windowClass};
    }
}

}  // namespace quibbits::x11
