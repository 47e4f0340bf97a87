#pragma once
// A tray of an older kind than the one on the message bus, for desktops that have no other.

#include <functional>
#include <optional>

#include "platform/Geometry.h"
#include "platform/Image.h"

namespace quibbits {

class OtherTray {
public:
    virtual ~OtherTray() = default;
    virtual void setImage(Image image) = 0;
    /// Shows the icon as soon as there is such a tray, or takes it away.
    virtual void setWanted(bool wanted) = 0;
    /// The icon is wanted and there is such a tray at the moment.
    virtual bool isThere() const = 0;
    /// Where the icon is, in global coordinates, while it is shown.
    virtual std::optional<Rect> frame() const = 0;

    std::function<void()> onClick;
    std::function<void()> onRightClick;
    /// The pointer has come over the icon, or has left it.
    std::function<void(bool isOver)> onHover;
};

}  // namespace quibbits
