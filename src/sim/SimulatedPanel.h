#pragma once
// A panel that shows its tree to nobody, or to a film. It follows the tree as a display would, and
// counts what painting it would take.

#include <functional>
#include <memory>
#include <vector>

#include "layers/LayerEngine.h"
#include "layers/LayerTree.h"
#include "layers/Panel.h"
#include "platform/Screens.h"

namespace quibbits {

class SimulatedPanels;

class SimulatedPanel final : public Panel {
public:
    SimulatedPanel(SimulatedPanels& panels, Panels::Spec spec);
    ~SimulatedPanel() override;

    Layer& root() override { return tree.root(); }
    Rect frame() const override { return frame_; }
    void setFrame(Rect frame) override;
    void setLevel(PanelLevel level) override;
    void orderFront() override;
    void orderOut() override;
    bool isVisible() const override { return shown_; }
    void setIgnoresMouse(bool ignores) override { ignoresMouse_ = ignores; }
    void setAlpha(double alpha) override;
    double alpha() const override { return alpha_; }
    void beginItemDrag(ItemDrag drag) override;
    void popUp(Menu menu, Point at) override;

    PanelLevel level() const { return level_; }
    /// Whether a press at a global point is for this panel.
    bool takesMouseAt(Point global) const;
    bool acceptsDrops() const { return acceptsDrops_; }

    std::uint64_t repaints = 0;       // frames with anything to paint
    std::uint64_t paintedPixels = 0;  // of all of them
    std::uint64_t frames = 0;         // times the display had to ask
    LayerTree tree;
    std::optional<Menu> openMenu;
    Point menuPlace;

private:
    void follow();

    SimulatedPanels& panels_;
    Rect frame_;
    PanelLevel level_;
    bool acceptsDrops_;
    bool shown_ = false;
    bool ignoresMouse_ = true;
    double alpha_ = 1;
    Timer wake_;
};

class SimulatedPanels final : public Panels {
public:
    SimulatedPanels(LayerEngine& engine, const Screens& screens, bool painting)
        : engine_(engine), screens_(screens), painting_(painting) {}

    std::unique_ptr<Panel> makePanel(Spec spec) override;
    LayerEngine& layers() override { return engine_; }

    /// The lowest first, by level and then by who came to the front last.
    const std::vector<SimulatedPanel*>& open() const { return open_; }
    /// The panel that has the mouse while a button is down.
    SimulatedPanel* grabbing = nullptr;
    /// What the user carries from one panel to another.
    std::optional<ItemDrag> carried;
    std::function<void(const Menu&)> onPopUp;
    double scale() const;
    bool painting() const { return painting_; }

private:
    friend class SimulatedPanel;
    /// Puts a panel on top of its level.
    void raise(SimulatedPanel& panel);
    LayerEngine& engine_;
    const Screens& screens_;
    bool painting_;
    std::vector<SimulatedPanel*> open_;
};

}  // namespace quibbits
