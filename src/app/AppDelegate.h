#pragma once
// Owns every long-lived object, builds them in order at launch and ties them together with
// closures: no subsystem knows another. The objects live as long as the process.

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/PartyDoor.h"
#include "aware/DownloadsGuard.h"
#include "aware/Power.h"
#include "aware/Senses.h"
#include "aware/ThunderboltKey.h"
#include "creature/Companion.h"
#include "dial/PartyDial.h"
#include "effects/BallFX.h"
#include "layers/Panel.h"
#include "platform/Computer.h"
#include "platform/Lifetime.h"
#include "settings/screens/Onboarding.h"
#include "settings/screens/SettingsWindow.h"
#include "stage/StageWindow.h"

namespace quibbits {

class AppDelegate {
public:
    AppDelegate(const Computer& computer, Panels& panels, views::ViewWindows& windows);
    ~AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    /// Builds everything and lets the creatures live. Without a screen nothing but the notification
    /// categories is set up.
    void applicationDidFinishLaunching();
    /// Creatures save as they go. A hidden pointer must be shown again, files that are just being
    /// destroyed go, and so do questions that nobody will hear the answer of.
    void applicationWillTerminate();

    /// Addresses such as quibbits://celebrate, in turn. Every creature hears the word of each; one
    /// without a word is a greeting, and one of another scheme is nothing.
    void open(const std::vector<std::string>& addresses);

    /// Opens the settings window, or brings it to the front.
    void showSettings();

    /// The first creature that is free for something; none while all are in their balls or busy.
    Companion* firstFree() const;

    // Empty before the launch, the stage until its end.
    StageWindow* stage() const { return stage_.get(); }
    const std::vector<std::unique_ptr<Companion>>& party() const { return party_; }
    Power* power() const { return power_.get(); }
    Senses* senses() const { return senses_.get(); }
    BallFX* ballFX() const { return ballFX_.get(); }
    PartyDial* dial() const { return dial_.get(); }
    ThunderboltKey* thunderboltKey() const { return thunderboltKey_.get(); }
    /// Empty until the user has been shown around.
    DownloadsGuard* downloads() const { return downloads_.get(); }

    /// The user wants the program to end: whoever runs the loop ends it.
    std::function<void()> onTerminate;

    /// For a record of what happens: called with every creature before it starts.
    std::function<void(Companion&)> onCreature;

private:
    void registerNotifications();
    void buildParty();
    void chooseWhoIsOut();
    void joinSenses();
    Habitat habitatOf(const Companion& creature);
    void joinEffects(const Screen& screen);
    void makeThunderboltKey();
    void makeGuard();
    /// The user has answered a notification.
    void answered(const NotificationResponse& response);
    void tellOfAccessibility();
    void zapOffered(const std::vector<std::string>& paths);
    /// The first free creature, else the first of all; none in an empty party.
    Companion* chosenForFiles() const;

    // The party dial (Dial.cpp).
    void buildDial();
    PartyMember partyMember(Companion& creature);
    /// Where balls fly from and to, on the stage.
    Point ballStart() const;
    Point toStage(Point global) const { return global - stageOrigin_; }

    // The settings and the welcome guide (SettingsWindows.cpp).
    void joinSettings();
    void welcome();
    void joinKeyboard();
    PetControls petControls(Companion& creature);

    const Computer computer_;
    Panels& panels_;
    SettingsWindow settings_;
    Onboarding onboarding_;
    // What is named later uses what is named before, and is gone first.
    std::unique_ptr<Power> power_;
    std::unique_ptr<Senses> senses_;
    std::vector<std::unique_ptr<Companion>> party_;  // Sparrel, Umbrool
    PartyDoor door_;
    std::unique_ptr<StageWindow> stage_;
    std::unique_ptr<BallFX> ballFX_;
    std::vector<Subscription> subscriptions_;
    std::unique_ptr<PartyDial> dial_;
    std::unique_ptr<ThunderboltKey> thunderboltKey_;
    std::unique_ptr<DownloadsGuard> downloads_;
    Vector stageOrigin_;
    Lifetime lifetime_;
};

}  // namespace quibbits
