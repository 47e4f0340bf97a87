// What creatures can walk on: the bottom of the screen, the dock, desktop icons, and which
// stretches of them no window hides.

#include <algorithm>
#include <charconv>
#include <set>
#include <string>

#include "stage/Footing.h"
#include "stage/StageWindow.h"

namespace quibbits {

namespace {

constexpr Seconds iconsGoStale = 20;
// An icon is walked on a little inside its width and above its middle, as shares of its width.
constexpr double iconHalfWidth = 0.42;
constexpr double iconRise = 0.32;

constexpr double bodyHeight = 30;     // points above a row that a window must leave free
constexpr double shortestFloor = 60;  // points of a stretch worth standing on
constexpr double shortestIcon = 20;
constexpr double usualTile = 48;
constexpr Size smallestFrontWindow{300, 200};

/// The parts of free stretches that a window from lo to hi leaves.
std::vector<Range> cut(const std::vector<Range>& free, Range window) {
    std::vector<Range> left;
    for (const Range& r : free) {
        if (r.lo < window.lo) left.push_back({r.lo, std::min(r.hi, window.lo)});
        if (window.hi < r.hi) left.push_back({std::max(window.hi, r.lo), r.hi});
    }
    return left;
}

/// Numbers separated by commas; pieces that are no numbers are passed over.
std::vector<double> numbers(const std::string& text) {
    std::vector<double> found;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(',', at), text.size());
        std::string piece = text.substr(at, end - at);
        piece.erase(0, piece.find_first_not_of(' '));
        double value = 0;
        const auto result = std::from_chars(piece.data(), piece.data() + piece.size(), value);
        if (!piece.empty() && result.ec == std::errc{} &&
            result.ptr == piece.data() + piece.size()) {
            found.push_back(value);
        }
        at = end + 1;
    }
    return found;
}

}  // namespace

void StageWindow::screenChanged() {
    const auto screen = computer_.screens.main();
    if (!screen) return;
    if (screen->frame != panel_->frame()) panel_->setFrame(screen->frame);
    updateGround();
}

void StageWindow::updateGround() {
    const auto screen = computer_.screens.main();
    if (!screen) return;
    std::vector<Rect> panels = computer_.dock.panels();
    for (Rect& each : panels) each = each.offset({-screen->frame.x, -screen->frame.y});
    if (panels.empty()) {
        if (const auto dock = estimatedDock(*screen)) panels.push_back(*dock);
    }
    const Footing footing = footingOf(panel_->frame().size(), std::move(panels));
    room_ = footing.room;
    ground_ = footing.rows;
    handOutGround();
}

void StageWindow::handOutGround() {
    for (Pet* pet : pets_) {
        std::vector<Ground> ground = ground_;
        ground.insert(ground.end(), icons_.begin(), icons_.end());
        pet->setTerrain(terrainFor(*pet, std::move(ground)));
    }
}

/// The place of a dock that only its file tells of, in the middle of the bottom.
std::optional<Rect> StageWindow::estimatedDock(const Screen& screen) const {
    const double top = screen.visibleFrame.minY() - screen.frame.minY();
    const auto preferences = computer_.dock.preferences();
    if (top <= 0 || !preferences || preferences->orientation.value_or("bottom") != "bottom") {
        return std::nullopt;
    }
    const double width = estimatedDockWidth(*preferences);
    return Rect{(panel_->frame().width - width) / 2, 0, width, top};
}

/// A dock is as wide as its tiles: the kept applications, the recent and running ones beside them,
/// what else is kept, the file manager, the Trash and a gap or two.
double StageWindow::estimatedDockWidth(const DockPreferences& preferences) const {
    const std::set<std::string> kept(preferences.persistentApps.begin(),
                                     preferences.persistentApps.end());
    std::set<std::string> extras;
    if (preferences.showRecents.value_or(true)) {
        extras.insert(preferences.recentApps.begin(), preferences.recentApps.end());
    }
    for (const Application& application : computer_.workspace.running()) {
        extras.insert(application.id);
    }
    std::erase_if(extras, [&](const std::string& id) {
        return kept.contains(id) || computer_.fileBrowser.isFileManager(id);
    });
    const std::size_t apps = kept.size() + 1 + extras.size();
    const std::size_t gaps = extras.empty() ? 1 : 2;
    const double tiles = static_cast<double>(apps + 1 + gaps) + preferences.persistentOthers;
    return preferences.tileSize.value_or(usualTile) * tiles;
}

void StageWindow::refreshIcons() {
    const Instant now = computer_.runLoop.now();
    const bool fresh = iconsRead_ && now - *iconsRead_ <= iconsGoStale;
    if (!iconsAllowed_ || fresh) return;
    iconsRead_ = now;
    takeIcons();
}

void StageWindow::takeIcons() {
    const auto drawn = computer_.fileBrowser.desktopIcons();
    if (!drawn) {
        iconsAllowed_ = computer_.fileBrowser.isReading();
        return;
    }
    const Rect frame = panel_->frame();
    icons_.clear();
    for (const DesktopIcon& icon : *drawn) {
        const Point c = icon.frame.center() - Vector{frame.x, frame.y};
        const double half = iconHalfWidth * icon.frame.width;
        const double y = c.y + iconRise * icon.frame.width;
        icons_.push_back({{c.x - half, c.x + half}, y, false});
    }
    handOutGround();
}

std::optional<Point> StageWindow::desktopIconCenter(const std::string& path) const {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos || path.substr(0, slash) != computer_.files.desktopFolder()) {
        return std::nullopt;
    }
    const std::string file = path.substr(slash + 1);
    const Vector origin{panel_->frame().x, panel_->frame().y};
    const auto told = [&]() -> std::optional<Point> {
        const auto place = computer_.fileBrowser.desktopPosition(file);
        return place ? std::optional(*place - origin) : std::nullopt;
    };

    const auto drawn = computer_.fileBrowser.desktopIcons();
    if (!drawn) return told();
    const auto named = [&](const std::string& name) {
        std::vector<Point> centers;
        for (const DesktopIcon& icon : *drawn) {
            if (icon.name == name) centers.push_back(icon.frame.center() - origin);
        }
        return centers;
    };
    auto matches = named(file);
    if (const std::size_t dot = file.rfind('.'); matches.empty() && dot > 0 && dot != file.npos) {
        matches = named(file.substr(0, dot));  // a desktop may hide the extension
    }
    if (matches.size() == 1) return matches.front();
    const auto place = told();
    if (matches.empty() || !place) return place;
    return *std::ranges::min_element(matches, {},
                                     [&](Point center) { return distance(center, *place); });
}

std::vector<Rect> StageWindow::appWindows() const {
    if (raised_) return {};
    const Rect frame = panel_->frame();
    std::vector<Rect> rects;
    for (const WindowInfo& window : computer_.windows.onScreen()) {
        if (window.layer != 0 || window.alpha.value_or(1) <= 0 || !window.frame) continue;
        rects.push_back(window.frame->offset({-frame.x, -frame.y}));
    }
    return rects;
}

bool StageWindow::isOpen(Point at) const {
    return std::ranges::none_of(appWindows(), [&](const Rect& r) { return r.contains(at); });
}

std::vector<Ground> StageWindow::openSpots() {
    refreshIcons();
    const auto windows = appWindows();
    std::vector<Ground> rows = ground_;
    if (!raised_) rows.insert(rows.end(), icons_.begin(), icons_.end());

    std::vector<Ground> spots;
    for (const Ground& row : rows) {
        std::vector<Range> free{row.span};
        const Rect band{row.span.lo, row.y, row.span.width(), bodyHeight};
        for (const Rect& window : windows) {
            if (window.intersects(band)) free = cut(free, {window.minX(), window.maxX()});
        }
        for (const Range& stretch : free) {
            if (stretch.width() > (row.solid ? shortestFloor : shortestIcon)) {
                spots.push_back({stretch, row.y, row.solid});
            }
        }
    }
    return spots;
}

std::optional<Rect> StageWindow::frontWindow() const {
    const auto override = numbers(computer_.defaults.string("QuibPhaseWindow").value_or(""));
    if (override.size() == 4) return Rect{override[0], override[1], override[2], override[3]};
    if (!raised_) return std::nullopt;
    const auto front = computer_.workspace.frontmost();
    if (!front || front->isSelf) return std::nullopt;
    const Rect frame = panel_->frame();
    for (const WindowInfo& window : computer_.windows.onScreen()) {
        if (window.process != front->process || window.layer != 0) continue;
        if (window.alpha.value_or(1) <= 0 || !window.frame) continue;
        const Rect& r = *window.frame;
        if (r.width < smallestFrontWindow.width || r.height < smallestFrontWindow.height) break;
        return r.offset({-frame.x, -frame.y});
    }
    return std::nullopt;
}

}  // namespace quibbits
