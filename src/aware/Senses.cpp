#include "aware/Senses.h"

#include <algorithm>

namespace quibbits {

namespace {

constexpr Seconds awayAfter = 300;
constexpr Seconds backWithin = 3;
constexpr Seconds checkPresent = 20;  // an absence may be noticed late
constexpr Seconds checkAway = 2;      // a return may not
constexpr Seconds tolerance = 2;
constexpr std::int64_t shortestStretch = 15;  // minutes

}  // namespace

Senses::Senses(Machine& machine, const Pointer& pointer, RunLoop& loop,
               const UserDefaults& defaults)
    : machine_(machine),
      pointer_(pointer),
      loop_(loop),
      defaults_(defaults),
      activeSince_(loop.now()),
      lastCheck_{loop.now(), loop.date()} {
    checkIdle();
    heat_ = machine_.thermalStateChanged.subscribe([this] {
        if (onHeat) onHeat();
    });
    network_ = machine_.networkReported.subscribe([this](bool on) { networkReported(on); });
    cameras_ = machine_.camerasChanged.subscribe([this] { camerasChanged(); });
    music_ = machine_.playerReported.subscribe(
        [this](const std::optional<std::string>& state) { musicPlaying_ = state == "Playing"; });
}

void Senses::checkIdle() {
    checkSleep();
    checkPresence(pointer_.idle());
    if (!away_) checkBreak();
    idleTimer_ = loop_.timer(
        away_ ? checkAway : checkPresent, [this] { checkIdle(); }, tolerance);
}

void Senses::checkPresence(Seconds idle) {
    if (!away_ && idle > awayAfter) {
        away_ = true;
        if (onAway) onAway();
    } else if (away_ && idle < backWithin) {
        away_ = false;
        activeSince_ = loop_.now();
        if (onBack) onBack();
    }
}

/// While the machine sleeps no time passes for it, and nobody is idle either; only the date tells.
void Senses::checkSleep() {
    const Check now{loop_.now(), loop_.date()};
    const Seconds slept = (now.date - lastCheck_.date) - (now.at - lastCheck_.at);
    if (slept > awayAfter) activeSince_ = now.at;
    lastCheck_ = now;
}

void Senses::checkBreak() {
    if (!defaults_.boolean("breakReminder")) return;
    const auto minutes = std::max(defaults_.integer("breakMinutes"), shortestStretch);
    const Instant now = loop_.now();
    if (now - activeSince_ <= static_cast<double>(minutes) * 60) return;
    activeSince_ = now;
    if (onBreakTime) onBreakTime();
}

void Senses::camerasChanged() {
    const auto inUse = machine_.camerasInUse();
    const bool on = std::ranges::find(inUse, true) != inUse.end();
    if (on == cameraOn_) return;
    cameraOn_ = on;
    if (onCamera) onCamera(on);
}

void Senses::networkReported(bool satisfied) {
    const bool changed = online_ && *online_ != satisfied;
    if (changed && onOnline) onOnline(satisfied);
    online_ = satisfied;
}

}  // namespace quibbits
