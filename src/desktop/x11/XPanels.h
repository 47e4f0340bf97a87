#pragma once
// Makes panels and tells them what the desktop does: screens, compositor and window manager that
// come and go. Must outlive every panel it has made.

#include "desktop/x11/XItemDrag.h"
#include "desktop/x11/XMenu.h"
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

    /// Opens a menu at a global point, for a panel or, as a tray icon's, for none. Another one that
    /// is open is closed.
    void openMenu(Menu menu, Point at, const XPanel* owner = nullptr);
    /// The menu that is open, if one is.
    const XMenu* menu() const { return menu_.get(); }
    /// The user carries an item out of a panel.
    void beginItemDrag(ItemDrag drag, const XPanel& from);

private:
    friend class XItemDrag;
    friend class XMenu;
    friend class XPanel;
    void findCompositor();
    void findWindowManager();
    void forget(XPanel& panel);
    void tellAll(void (XPanel::*message)());

    Connection& connection_;
    XScreens& screens_;
    XPointer& pointer_;
    LayerEngine& engine_;
    PanelVisual visual_;
    Painter painter_;  // one for all: its caches are shared
    TextRuler ruler_;
    bool hasCompositor_ = false;
    PanelWindow::Managed managed_ = PanelWindow::Managed::yes;
    std::vector<XPanel*> panels_;
    std::vector<Subscription> subscriptions_;
    const XPanel* menuOwner_ = nullptr;
    const XPanel* dragSource_ = nullptr;
    std::unique_ptr<XMenu> menu_;
    std::unique_ptr<XItemDrag> drag_;
};

}  // namespace quibbits::x11
