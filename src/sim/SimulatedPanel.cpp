#include "sim/SimulatedPanel.h"

#include <algorithm>

namespace quibbits {

SimulatedPanel::SimulatedPanel(SimulatedPanels& panels, Panels::Spec spec)
    : tree(panels.layers()),
      panels_(panels),
      frame_(spec.frame),
      level_(spec.level),
      acceptsDrops_(spec.acceptsDrops) {
    panels_.open_.push_back(this);
    setFrame(frame_);
    if (panels_.painting()) tree.onChange = [this] { follow(); };
}

SimulatedPanel::~SimulatedPanel() {
    std::erase(panels_.open_, this);
    if (panels_.grabbing == this) panels_.grabbing = nullptr;
}

void SimulatedPanel::setFrame(Rect frame) {
    frame_ = frame;
    tree.setSurface(frame.size(), panels_.scale());
}

void SimulatedPanel::orderFront() {
    shown_ = true;
    auto& all = panels_.open_;
    const auto self = std::ranges::find(all, this);
    std::rotate(self, self + 1, all.end());
    if (panels_.painting()) follow();
}

void SimulatedPanel::popUp(Menu menu, Point at) {
    openMenu = std::move(menu);
    menuPlace = at;
}

bool SimulatedPanel::takesMouseAt(Point global) const {
    if (!shown_ || ignoresMouse_) return false;
    const Point at = global - Vector{frame_.x, frame_.y};
    if (!mouseAreas) return true;
    const auto areas = mouseAreas();
    return std::ranges::any_of(areas, [&](const Rect& r) { return r.contains(at); });
}

void SimulatedPanel::follow() {
    // What changed in this turn is painted together, after it.
    RunLoop& loop = tree.root().engine().runLoop();
    wake_ = loop.timer(0, [this, &loop] {
        const auto damage = tree.nextFrame(loop.now());
        ++frames;
        if (!damage.empty()) ++repaints;
        for (const PixelRect& r : damage) {
            paintedPixels +=
                static_cast<std::uint64_t>(r.width) * static_cast<std::uint64_t>(r.height);
        }
        if (const auto next = tree.nextWake(loop.now())) {
            wake_ = loop.timer(*next - loop.now(), [this] { follow(); });
        }
    });
}

std::unique_ptr<Panel> SimulatedPanels::makePanel(Spec spec) {
    return std::make_unique<SimulatedPanel>(*this, spec);
}

double SimulatedPanels::scale() const {
    const auto screen = screens_.main();
    return screen ? screen->scale : 1;
}

}  // namespace quibbits
