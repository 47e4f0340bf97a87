#include "sim/SimulatedPanel.h"

#include <algorithm>

namespace quibbits {

SimulatedPanel::SimulatedPanel(SimulatedPanels& panels, Panels::Spec spec)
    : tree(panels.layers()),
      panels_(panels),
      frame_(spec.frame),
      level_(spec.level),
      acceptsDrops_(spec.acceptsDrops) {
    panels_.raise(*this);
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

void SimulatedPanel::setLevel(PanelLevel level) {
    level_ = level;
    panels_.raise(*this);
}

void SimulatedPanel::orderFront() {
    shown_ = true;
    panels_.raise(*this);
    if (panels_.painting()) follow();
}

void SimulatedPanel::orderOut() {
    shown_ = false;
    wake_.cancel();
}

void SimulatedPanel::setAlpha(double alpha) {
    alpha_ = alpha;
    const Transaction still(panels_.layers(), Transaction::withoutActions());
    tree.root().setOpacity(alpha);
}

void SimulatedPanel::beginItemDrag(ItemDrag drag) {
    panels_.carried = std::move(drag);
}

void SimulatedPanel::popUp(Menu menu, Point at) {
    openMenu = std::move(menu);
    menuPlace = at;
    if (panels_.onPopUp) panels_.onPopUp(*openMenu);
}

bool SimulatedPanel::takesMouseAt(Point global) const {
    if (!shown_ || ignoresMouse_ || alpha_ <= 0) return false;
    const Point at = global - Vector{frame_.x, frame_.y};
    if (!mouseAreas) return true;
    const auto areas = mouseAreas();
    return std::ranges::any_of(areas, [&](const Rect& r) { return r.contains(at); });
}

void SimulatedPanel::follow() {
    if (!shown_) return;
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

void SimulatedPanels::raise(SimulatedPanel& panel) {
    std::erase(open_, &panel);
    const auto above = std::ranges::upper_bound(open_, panel.level(), {}, &SimulatedPanel::level);
    open_.insert(above, &panel);
}

double SimulatedPanels::scale() const {
    const auto screen = screens_.main();
    return screen ? screen->scale : 1;
}

}  // namespace quibbits
