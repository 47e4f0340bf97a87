#pragma once
// Owns every long-lived object, builds them in order at launch and ties them together with
// closures: no subsystem knows another. The objects live as long as the process.

#include <functional>
#include <memory>
#include <vector>

#include "aware/Power.h"
#include "aware/Senses.h"
#include "creature/Companion.h"
#include "layers/Panel.h"
#include "platform/Computer.h"
#include "stage/StageWindow.h"

namespace quibbits {

class AppDelegate {
public:
    AppDelegate(const Computer& computer, Panels& panels);
    ~AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    /// Builds everything and lets the creatures live. Without a screen nothing but the notification
    /// categories is set up.
    void applicationDidFinishLaunching();
    /// Creatures save as they go; only a hidden pointer must be shown again.
    void applicationWillTerminate();

    /// A word from an address, for every creature in turn.
    void hear(const std::string& word);

    // Empty until the launch is done.
    StageWindow* stage() const { return stage_.get(); }
    const std::vector<std::unique_ptr<Companion>>& party() const { return party_; }
    Power* power() const { return power_.get(); }
    Senses* senses() const { return senses_.get(); }

    /// For a record of what happens: called with every creature before it starts.
    std::function<void(Companion&)> onCreature;

private:
    void registerNotifications();
    void buildParty();
    void chooseWhoIsOut();
    void joinSenses();
    Companion* firstFree() const;

    const Computer computer_;
    Panels& panels_;
    // In the order of building: what is named later is gone first.
    std::unique_ptr<Power> power_;
    std::unique_ptr<Senses> senses_;
    std::vector<std::unique_ptr<Companion>> party_;  // Sparrel, Umbrool
    std::unique_ptr<StageWindow> stage_;
};

}  // namespace quibbits
