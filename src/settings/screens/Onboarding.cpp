#include "settings/screens/Onboarding.h"

#include <utility>

#include "settings/screens/SettingsWindow.h"

namespace quibbits {

using namespace screens;

namespace {

constexpr Size windowSize{640, 600};
constexpr Seconds answerTime = 1.5;  // until the desktop may have been told what it was asked

}  // namespace

Onboarding::Onboarding(const Computer& computer, views::ViewWindows& windows)
    : computer_(computer), windows_(windows) {}

Onboarding::~Onboarding() = default;

void Onboarding::show(bool again, std::function<void()> finished) {
    if (window_) return window_->bringToFront();
    const std::int64_t first = computer_.defaults.integer("QuibWelcomePage");
    installed_ = computer_.workspace.installed();
    step_ =
        first >= 0 && first < welcomeSteps ? static_cast<WelcomeStep>(first) : WelcomeStep::welcome;
    finished_ = again ? nullptr : std::move(finished);
    window_ = windows_.open({.title = "Welcome to Quibbits", .size = windowSize}, tree());
    window_->onAction = lifetime_.guard([this](const views::Action& action) { act(action); });
    window_->onClose = lifetime_.guard([this] {
        if (window_->wasShown()) markDone();
        endWindow();
    });
    following_ = std::make_unique<Following>(computer_, [this] { refresh(); });
}

views::View Onboarding::tree() const {
    return welcome(computer_, installed_, step_);
}

void Onboarding::refresh() {
    if (window_) window_->update(tree());
}

void Onboarding::act(const views::Action& action) {
    const int at = static_cast<int>(step_);
    if (action.id == goesBack && at > 0) {
        step_ = static_cast<WelcomeStep>(at - 1);
    } else if (action.id == goesOn && step_ == WelcomeStep::party) {
        return finish();
    } else if (action.id == goesOn) {
        step_ = static_cast<WelcomeStep>(at + 1);
    } else if (action.id == asksPermission) {
        askPermission(computer_, step_);
        computer_.runLoop.after(answerTime, lifetime_.guard([this] { refresh(); }));
        return;
    } else if (!changeSession(computer_, action) && !storeChoice(computer_.defaults, action)) {
        changeBehindApps(computer_.defaults, action);
    }
    refresh();
}

void Onboarding::finish() {
    markDone();
    endWindow();
    if (const auto finished = std::exchange(finished_, nullptr)) finished();
}

void Onboarding::endWindow() {
    following_.reset();
    window_.reset();
    installed_.clear();
}

void Onboarding::markDone() {
    computer_.defaults.set("onboarded", true);
    for (const auto& each : std::exchange(whenDone, {})) each();
}

}  // namespace quibbits
