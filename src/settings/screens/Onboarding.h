#pragma once
// The welcome guide of the first run: eight pages with the house rules and what the desktop must
// allow. Some things wait until it has ended once. It can be seen again from the settings.

#include <functional>
#include <memory>
#include <vector>

#include "platform/Lifetime.h"
#include "settings/screens/Following.h"
#include "settings/screens/Screens.h"
#include "views/ViewWindow.h"

namespace quibbits {

class Onboarding {
public:
    Onboarding(const Computer& computer, views::ViewWindows& windows);
    ~Onboarding();
    Onboarding(const Onboarding&) = delete;
    Onboarding& operator=(const Onboarding&) = delete;

    /// Opens the guide, or brings the open one to the front and ignores the arguments. `finished`
    /// is called when the user reaches the end, unless the guide is seen again.
    void show(bool again, std::function<void()> finished);
    bool isOpen() const { return window_ != nullptr; }
    /// Whether the guide has ended at least once.
    bool isDone() const { return computer_.defaults.boolean("onboarded"); }

    /// Run once, in turn, when the guide is finished, or closed after it was seen.
    std::vector<std::function<void()>> whenDone;

private:
    void act(const views::Action& action);
    void finish();
    void markDone();
    void endWindow();
    views::View tree() const;
    void refresh();

    const Computer computer_;
    views::ViewWindows& windows_;
    screens::WelcomeStep step_ = screens::WelcomeStep::welcome;
    std::function<void()> finished_;
    std::vector<InstalledApplication> installed_;  // read once a window: that is slow
    std::unique_ptr<views::ViewWindow> window_;
    std::unique_ptr<screens::Following> following_;
    Lifetime lifetime_;
};

}  // namespace quibbits
