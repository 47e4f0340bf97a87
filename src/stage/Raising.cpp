// Whether the panel floats over the windows or lies behind them.

#include <algorithm>
#include <array>
#include <string_view>

#include "settings/model/Setting.h"
#include "stage/StageWindow.h"

namespace quibbits {

namespace {

constexpr Seconds checkEvery = 2;

/// What the addresses of videos hold, and how the titles of their pages end.
constexpr std::array videoAddresses{"youtube.com/watch", "youtube.com/shorts", "youtube.com/live",
                                    "youtu.be/"};
constexpr std::string_view videoTitle = " - YouTube";

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
    const auto isFront = [&](const std::string& name) { return front && front->isCalled(name); };
    if (std::ranges::any_of(behind, isFront)) return false;
    if (front && fillsScreen(front->process)) return false;
    if (!computer_.defaults.boolean("onboarded")) return true;
    return !(front && watchesVideo(*front));
}

/// By the address where the browser tells it; a title alone cannot tell a video from the page of a
/// channel, but tells both from the site's front page.
bool StageWindow::watchesVideo(const Application& front) const {
    const auto page = computer_.workspace.page(front);
    if (!page) return false;
    if (!page->address) return page->title.find(videoTitle) != std::string::npos;
    return std::ranges::any_of(videoAddresses, [&](std::string_view part) {
        return page->address->find(part) != std::string::npos;
    });
}

bool StageWindow::fillsScreen(std::int64_t process) const {
    const Rect frame = panel_->frame();
    return std::ranges::any_of(computer_.windows.onScreen(), [&](const WindowInfo& window) {
        return window.process == process && window.layer == 0 && window.frame &&
               window.frame->intersects(frame) && window.frame->width >= frame.width - 1 &&
               window.frame->height >= frame.height - 1;
    });
}

}  // namespace quibbits
