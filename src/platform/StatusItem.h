#pragma once
// The program's icon in the desktop's tray. A tray may be missing, come later and go again; nothing
// is lost meanwhile.

#include <functional>
#include <optional>
#include <string>

#include "platform/Geometry.h"
#include "platform/Image.h"
#include "platform/Menu.h"

namespace quibbits {

class StatusItem {
public:
    virtual ~StatusItem() = default;
    /// The picture and what is said of it when the pointer rests on it.
    virtual void show(Image image, std::string toolTip) = 0;
    /// Opens a menu at the icon, or wherever the desktop puts an icon's menu.
    virtual void popUp(Menu menu) = 0;
    /// Where the icon is, in global coordinates: exactly where the desktop tells it, else about the
    /// last click on it, else the corner of the screen where trays are; the middle of the floor
    /// while there is no tray. None without a screen.
    virtual std::optional<Rect> frame() const = 0;
    /// Whether some tray shows the icon now.
    virtual bool isShown() const = 0;

    /// The icon's menu for desktops that show it themselves, at a right click or to somebody who
    /// cannot use a mouse. Asked each time it is about to be shown. Where it is missing such a
    /// click comes as onRightClick.
    std::function<Menu()> onMenu;

    // The mouse went up on the icon. The desktop, or a second start of the program, may send these
    // too. The press before lies in the frame and, where the icon is another program's window, is
    // told as one elsewhere.
    std::function<void()> onClick;
    std::function<void()> onRightClick;
};

}  // namespace quibbits
