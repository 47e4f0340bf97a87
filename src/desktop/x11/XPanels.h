#pragma once
// Makes panels and tells them what the desktop does: screens, compositor and window manager that
// come and go. Must outlive every panel it has made.

#include "desktop/x11/XPanel.h"

namespace quibbits::x11 {

class XPanels final : public Panels {
public:
    XPanels(Connection& connection, XScreens& screens, XPointer& pointer, LayerEngine& engine);

    /// The visual that panels need exists.
    bool isUsable() const { return static_cast<bool>(visual_); }
    std::unique_ptr<Panel> makePanel(Spec spec) override;
    LayerEngine& layers() override { return engine_; }

    bool hasCompositor() const { return hasCompositor_; }

private:
    friend class XPanel;
    void findCompositor();
    void tellAll(void (XPanel::*message)());

    Connection& connection_;
    XScreens& screens_;
    XPointer& pointer_;
    LayerEngine& engine_;
    PanelVisual visual_;
    Painter painter_;  // one for all: its caches are shared
    bool hasCompositor_ = false;
    std::vector<XPanel*> panels_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace quibbits::x11
