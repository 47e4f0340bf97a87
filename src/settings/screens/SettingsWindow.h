#pragma once
// The program's one ordinary window: the party, a page for each creature, and the rules for all.
// It lives from `show` until it is closed, and reads the creatures again after everything that the
// user does in it and whenever something was saved; in between a page shows what it last read.

#include <functional>
#include <memory>
#include <vector>

#include "platform/Lifetime.h"
#include "settings/screens/Following.h"
#include "settings/screens/Screens.h"
#include "views/ViewWindow.h"

namespace quibbits {

class SettingsWindow {
public:
    SettingsWindow(const Computer& computer, views::ViewWindows& windows);
    ~SettingsWindow();
    SettingsWindow(const SettingsWindow&) = delete;
    SettingsWindow& operator=(const SettingsWindow&) = delete;

    /// Opens the window, or brings the open one to the front, which keeps its controls.
    void show(std::vector<PetControls> party);
    bool isOpen() const { return window_ != nullptr; }

    /// The user wants to see the welcome guide again.
    std::function<void()> onWelcome;
    /// An address is to be opened: one of this program's own, or of the web.
    std::function<void(const std::string&)> onOpen;

private:
    views::View tree();
    void refresh();
    void finishPreviews();
    void act(const views::Action& action);
    void actOnPage(const views::Action& action);
    void turnTo(screens::Page page);
    const PetControls* controls() const;

    const Computer computer_;
    views::ViewWindows& windows_;
    std::vector<PetControls> party_;
    screens::SettingsState state_;
    screens::Previews previews_;  // of the creature on show
    std::optional<std::pair<std::string, Stage>> previewed_;
    Timer rest_;  // of the previews
    std::unique_ptr<views::ViewWindow> window_;
    std::unique_ptr<screens::Following> following_;
    Lifetime lifetime_;
};

/// Stores what an action of a switch, stepper or picker carries; false for any other action.
bool storeChoice(UserDefaults& defaults, const views::Action& action);
/// Changes the list of applications to stay behind; false for any other action.
bool changeBehindApps(UserDefaults& defaults, const views::Action& action);

}  // namespace quibbits
