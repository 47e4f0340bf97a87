// Whether the panel floats over the windows or lies behind them.

#include <algorithm>

#include "settings/model/Setting.h"
#include "stage/StageWindow.h"

namespace quibbits {

namespace {

constexpr Seconds checkEvery = 2;

}  // namespace

void StageWindow::updateRaised() {
    const bool raised = shouldBeRaised();
    if (raised != raised_) {
        raised_ = raised;
        panel_->setLevel(raised ? PanelLevel::floating : PanelLevel::desktop);
    }
    if (!isOn(computer_.defaults, Setting::overApps)) {
        raisedCheck_.cancel();
    } else if (!raisedCheck_) {
        raisedCheck_ = computer_.runLoop.every(
            checkEvery, [this] { updateRaised(); }, 0.5);
    }
}

bool StageWindow::shouldBeRaised() const {
    if (!isOn(computer_.defaults, Setting::overApps)) return false;
    const auto front = computer_.workspace.frontmost();
    const auto behind = Settings::behindApps(computer_.defaults);
    if (std::ranges::find(behind, front ? front->id : std::string()) != behind.end()) return false;
    return !(front && fillsScreen(front->process));
}

bool StageWindow::fillsScreen(std::int64_t process) const {
    const Rect frame = panel_->frame();
    return std::ranges::any_of(computer_.windows.onScreen(), [&](const WindowInfo& window) {
        return window.process == process && window.layer == 0 && window.frame &&
               window.frame->width >= frame.width - 1 && window.frame->height >= frame.height - 1;
    });
}

}  // namespace quibbits
