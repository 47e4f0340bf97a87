#pragma once
// Ordinary windows that nobody sees: each keeps the tree that it was given, and a script acts on it
// as a user would.

#include <string>
#include <vector>

#include "views/ViewWindow.h"

namespace quibbits {

class SimulatedViewWindows;

class SimulatedViewWindow final : public views::ViewWindow {
public:
    SimulatedViewWindow(SimulatedViewWindows& windows, views::WindowSpec spec, views::View tree);
    ~SimulatedViewWindow() override;

    void update(views::View next) override;
    void bringToFront() override { ++timesInFront; }
    bool wasShown() const override { return canBeSeen; }

    /// Does something to the view of that identity. False when there is none or it is disabled.
    bool act(const std::string& id, views::Action::Value value = {});
    /// As the user does by the title bar.
    void close();

    const views::WindowSpec spec;
    views::View tree;
    int updates = 0;
    int timesInFront = 1;
    bool canBeSeen = true;  // else nobody could show it

private:
    SimulatedViewWindows& windows_;
};

class SimulatedViewWindows final : public views::ViewWindows {
public:
    std::unique_ptr<views::ViewWindow> open(const views::WindowSpec& spec,
                                            views::View tree) override;
    /// The open window of that title; none when there is none.
    SimulatedViewWindow* titled(const std::string& title) const;
    const std::vector<SimulatedViewWindow*>& all() const { return all_; }

private:
    friend class SimulatedViewWindow;
    std::vector<SimulatedViewWindow*> all_;
};

}  // namespace quibbits
