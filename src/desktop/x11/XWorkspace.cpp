#include "desktop/x11/XWorkspace.h"

#include <unistd.h>

#include <algorithm>
#include <array>

#include "desktop/files/InstalledApplications.h"
#include "desktop/windows/Spawn.h"
#include "desktop/x11/Properties.h"

namespace quibbits::x11 {
namespace {

/// The second of the two texts of WM_CLASS, in small letters.
std::string classOf(std::string_view classes) {
    const auto first = classes.find('\0');
    auto name = first == std::string_view::npos ? classes : classes.substr(first + 1);
    name = name.substr(0, name.find('\0'));
    std::string small(name);
    std::ranges::transform(small, small.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return small;
}

/// Browsers by their window class or application id.
bool isBrowser(std::string_view id) {
    static constexpr std::array known{
        "firefox",       "firefox-esr",    "org.mozilla.firefox",
        "librewolf",     "chromium",       "google-chrome",
        "brave-browser", "microsoft-edge", "vivaldi-stable",
        "opera",         "epiphany",       "org.gnome.epiphany",
        "falkon",        "org.kde.falkon", "konqueror",
        "midori",
    };
    return std::ranges::find(known, id) != known.end();
}

bool contains(const std::vector<Application>& list, const Application& application) {
    return std::ranges::find(list, application) != list.end();
}

}  // namespace

XWorkspace::XWorkspace(Connection& connection) : connection_(connection) {
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
    if (const auto found = windows_.find(*active); found != windows_.end()) front_ = found->second;
}

std::optional<WebPage> XWorkspace::page(const Application& application) const {
    if (front_ != application || !isBrowser(application.id)) return std::nullopt;
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
        const auto& known = windows_[window];
        if (known && !contains(running_, *known)) running_.push_back(*known);
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
        const bool furniture = type.contains(connection_.atom(Atom::typeDock)) ||
                               type.contains(connection_.atom(Atom::typeDesktop));
        auto& known = windows_[windows[i]];
        if (furniture) continue;
        const auto id = applicationId.text();
        known = Application{.id = id.empty() ? classOf(classes.text()) : std::string(id),
                            .process = process,
                            .isSelf = process == getpid()};
    }
}

}  // namespace quibbits::x11
