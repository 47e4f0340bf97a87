#pragma once
// A see-through surface on the desktop that shows a layer tree: the interface between the core and
// a display. A backend owns the native window, paints the tree's damage and hands events back.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "layers/Layer.h"
#include "platform/Geometry.h"
#include "platform/Image.h"
#include "platform/Menu.h"

namespace quibbits {

/// How high a panel stands among the windows.
enum class PanelLevel {
    desktop,   // just above the desktop and its icons, under every application
    floating,  // over ordinary windows
    menu,      // over everything, for menus and the dial
};

/// What is being dragged over a panel from elsewhere.
struct DragInfo {
    Point location;  // in the panel's coordinates
    /// The private item's name when the drag carries one.
    std::optional<std::string> item;
    /// Absolute paths of the files that the drag carries. A backend may give them only at the drop.
    std::vector<std::string> files;
};

/// The pasteboard type of an item that is carried from the dial.
inline constexpr const char* itemPasteboardType = "com.quibbits.item";

/// An item that the user carries out of a panel with the button held, to drop it on another panel
/// of this program.
struct ItemDrag {
    std::string item;
    Image image;  // goes with the pointer, in its middle
    Size size;    // of the picture, in points
    /// The pointer moved, to a point in global coordinates.
    std::function<void(Point)> onMove;
    /// The item was dropped, somewhere or nowhere. Called once, after the drop was taken.
    std::function<void()> onEnd;
};

class Panel {
public:
    virtual ~Panel() = default;

    /// The root of what is shown; its origin is the panel's lower left corner.
    virtual Layer& root() = 0;
    /// In global coordinates.
    virtual Rect frame() const = 0;
    virtual void setFrame(Rect frame) = 0;
    virtual void setLevel(PanelLevel level) = 0;
    /// Shows the panel on top of its level, without taking the focus.
    virtual void orderFront() = 0;
    virtual void orderOut() = 0;
    virtual bool isVisible() const = 0;
    /// While true, every click and move goes to what lies beneath. A panel starts so.
    virtual void setIgnoresMouse(bool ignores) = 0;
    /// How much of the whole panel is seen, 0 to 1. At 0 it takes no mouse.
    virtual void setAlpha(double alpha) = 0;
    virtual double alpha() const = 0;
    /// Lets the user carry an item from here on; called while the button is down. Panels under the
    /// pointer hear of it through onDragOver and onDrop.
    virtual void beginItemDrag(ItemDrag drag) = 0;
    /// Opens a menu that hangs from the point by its upper left corner, or stands on it where there
    /// is no room beneath, shifted to stay on the screen.
    virtual void popUp(Menu menu, Point at) = 0;

    /// The parts of the panel that take the mouse, in its own coordinates. A backend that can
    /// confine the mouse to them asks when the pointer or the picture has moved, and lets a quick
    /// press on one in without waiting for setIgnoresMouse; the others take the mouse everywhere
    /// while they do not ignore it.
    std::function<std::vector<Rect>()> mouseAreas;

    // Events while the panel takes the mouse. Positions are read from Pointer.
    std::function<void()> onMouseMoved;
    std::function<void()> onMouseDown;
    std::function<void()> onMouseDragged;
    std::function<void()> onMouseUp;
    std::function<void()> onRightMouseDown;
    /// Whether a drag may be dropped where it is; asked at entering and at every move.
    std::function<bool(const DragInfo&)> onDragOver;
    /// Takes a drop. True when it was taken.
    std::function<bool(const DragInfo&)> onDrop;
};

class Panels {
public:
    virtual ~Panels() = default;

    struct Spec {
        Rect frame;
        PanelLevel level = PanelLevel::floating;
        bool acceptsDrops = false;
    };
    /// A panel that is not shown yet.
    virtual std::unique_ptr<Panel> makePanel(Spec spec) = 0;
    virtual LayerEngine& layers() = 0;
};

}  // namespace quibbits
