#include "desktop/session/DesktopIcons.h"

#include <algorithm>
#include <array>
#include <utility>

#include "desktop/session/AccessibleWalk.h"
#include "desktop/session/BusValues.h"
#include "desktop/session/SelectionWalk.h"

namespace quibbits::session {
namespace {

constexpr Seconds staleAfter = 20;
constexpr Seconds untilNextLook = 0.1;
constexpr Seconds longestWithoutWindow = 0.6;
constexpr std::size_t mostObjects = 4000;
constexpr std::size_t deepest = 9;
constexpr double smallestIcon = 8;  // pixels

bool holdsIcons(Role role) {
    static constexpr std::array roles{Role::filler,   Role::frame, Role::layeredPane,
                                      Role::list,     Role::panel, Role::scrollPane,
                                      Role::viewport, Role::window};
    return std::ranges::find(roles, role) != roles.end();
}

bool isIcon(Role role) {
    static constexpr std::array roles{Role::canvas,   Role::desktopIcon, Role::icon,   Role::image,
                                      Role::listItem, Role::tableCell,   Role::unknown};
    return std::ranges::find(roles, role) != roles.end();
}

}  // namespace

/// One reading of everything, from the list of applications down to the icons.
class DesktopIcons::Walk final : public AccessibleWalk {
public:
    Walk(Bus& bus, const Display& display, std::function<void(std::vector<DesktopIcon>)> done)
        : AccessibleWalk(bus, mostObjects),
          display_(display),
          screen_(display.screen()),
          done_(std::move(done)) {
        fileManagers([this](const Object& application) {
            children(application, [this](const Object& window) {
                extentsOf(window, [this, window](const Rect& frame) {
                    if (coversScreen(frame)) children(window, inside());
                });
            });
        });
    }

private:
    bool coversScreen(const Rect& frame) const {
        return frame.width >= screen_.width - 1 && frame.height >= screen_.height - 1;
    }

    EachObject inside() {
        return [this](const Object& object) { visit(object); };
    }

    void visit(const Object& object) {
        if (object.place.size() > deepest) return;
        roleOf(object, [this, object](Role role) {
            if (holdsIcons(role)) return children(object, inside());
            if (!isIcon(role)) return;
            nameOf(object, [this, object](const std::string& name) {
                if (name.empty()) return;
                extentsOf(object, [this, object, name](const Rect& frame) {
                    if (frame.width < smallestIcon || frame.height < smallestIcon) return;
                    if (frame.width > screen_.width / 2 || frame.height > screen_.height / 2)
                        return;
                    found_[object.place] = {.name = name, .frame = display_.toPoints(frame)};
                });
            });
        });
    }

    void ended() override {
        std::vector<DesktopIcon> icons;
        for (auto& [place, icon] : found_) icons.push_back(std::move(icon));
        const auto done = std::move(done_);
        done(std::move(icons));  // this object may be gone now
    }

    const Display& display_;
    const Size screen_;
    std::function<void(std::vector<DesktopIcon>)> done_;
    std::map<std::vector<std::size_t>, DesktopIcon> found_;
};

DesktopIcons::DesktopIcons(EventRunLoop& loop, Bus& session, Display display)
    : loop_(loop),
      session_(session),
      display_(std::move(display)),
      lastRead_(loop.now() - 2 * staleAfter) {}

DesktopIcons::~DesktopIcons() = default;

std::optional<std::vector<DesktopIcon>> DesktopIcons::desktopIcons() {
    if (!walk_ && loop_.now() - lastRead_ > staleAfter - 1) {
        lastRead_ = loop_.now();
        withBus([this] {
            if (!bus_) return finish({});
            if (!walk_) walk();
        });
    }
    return icons_;
}

void DesktopIcons::readSelection(std::function<void(const FileSelection&)> done) {
    selectionAsked_.push_back(std::move(done));
    if (selectionAsked_.size() > 1) return;  // one reading answers all
    withBus([this] {
        if (!bus_) return copySelection({});
        // While the key that asks for this is down, no window may say that it is active.
        selectionGivenUp_ = loop_.now() + longestWithoutWindow;
        selectionDeadline_ = loop_.timer(AccessibleWalk::longest, [this] { copySelection({}); });
        walkSelection();
    });
}

void DesktopIcons::walkSelection() {
    const auto number = ++selectionNumber_;
    selectionWalk_ = std::make_unique<SelectionWalk>(
        *bus_, display_.toPoints, [this, number](FileSelection found) {
            // The walk is still at work here.
            loop_.post(lifetime_.guard([this, number, found = std::move(found)]() mutable {
                if (number != selectionNumber_) return;  // given up meanwhile
                if (!found.window && loop_.now() < selectionGivenUp_) {
                    selectionRetry_ = loop_.timer(untilNextLook, [this] { walkSelection(); });
                } else {
                    copySelection(std::move(found));
                }
            }));
        });
}

/// What was seen tells at least where things lie.
void DesktopIcons::copySelection(FileSelection seen) {
    seen.isKnown = seen.window.has_value();
    if (!seen.paths.empty() || !display_.copied) return tellSelection(std::move(seen));
    ++selectionNumber_;
    selectionDeadline_.cancel();
    display_.copied(lifetime_.guard([this, seen](const Display::Files& files) mutable {
        seen.isKnown = files.has_value();
        if (files) seen.paths = *files;
        tellSelection(std::move(seen));
    }));
}

void DesktopIcons::tellSelection(FileSelection selection) {
    ++selectionNumber_;
    selectionWalk_.reset();
    selectionDeadline_.cancel();
    selectionRetry_.cancel();
    for (const auto& done : std::exchange(selectionAsked_, {})) done(selection);
}

bool DesktopIcons::isFileManager(const std::string& application) const {
    return isKnownFileManager(application);
}

void DesktopIcons::withBus(Job job) {
    if (bus_) return job();
    whenFound_.push_back(std::move(job));
    if (whenFound_.size() > 1) return;
    question_ = session_.call({.destination = "org.a11y.Bus",
                               .path = "/org/a11y/bus",
                               .interface = "org.a11y.Bus",
                               .member = "GetAddress"},
                              {}, [this](sd_bus_message* reply, const Bus::Failure&) {
                                  const auto address = reply ? readText(reply) : std::nullopt;
                                  if (address && !address->empty()) openBus(*address);
                                  const auto waiting = std::exchange(whenFound_, {});
                                  for (const Job& each : waiting) each();
                              });
}

void DesktopIcons::openBus(const std::string& address) {
    bus_ = std::make_unique<Bus>(loop_, Bus::Place{.kind = Bus::Kind::session, .address = address});
    loss_ = bus_->lost.subscribe([this] {
        // Its next start has another address.
        loop_.post(lifetime_.guard([this] {
            walk_.reset();
            selectionWalk_.reset();
            loss_.reset();
            bus_.reset();
            tellSelection({.isKnown = false});
        }));
    });
}

void DesktopIcons::walk() {
    walk_ = std::make_unique<Walk>(*bus_, display_, [this](std::vector<DesktopIcon> icons) {
        // The walk is still at work here.
        loop_.post(lifetime_.guard([this, icons = std::move(icons)] { finish(icons); }));
    });
    deadline_ = loop_.timer(AccessibleWalk::longest, [this] {
        walk_.reset();  // what was read before stays
        if (!icons_) finish({});
    });
}

void DesktopIcons::finish(std::vector<DesktopIcon> icons) {
    walk_.reset();
    deadline_.cancel();
    if (icons_ == icons) return;
    icons_ = std::move(icons);
    iconsRead.emit();
}

}  // namespace quibbits::session
