#pragma once
// A popup menu drawn by the layer engine in a panel of its own: its rows, which of them is picked
// and how the user chooses. Owned by the backend, which hands the mouse and the keys of the whole
// desktop on while the menu is open. Runs nothing itself: it says which line was chosen.

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "layers/LayerEngine.h"
#include "layers/Panel.h"
#include "platform/Menu.h"
#include "platform/Text.h"

namespace quibbits {

enum class MenuKey { up, down, first, last, choose, cancel };

class PopupMenu {
public:
    /// In global coordinates.
    struct Place {
        Point corner;   // the menu's upper left one, or the lower left one where it must go upwards
        Rect bounds;    // the menu is moved to lie inside
        Point pointer;  // where the pointer is now
    };
    PopupMenu(Panels& panels, const TextMeasure& text, const Menu& menu, Place place);
    ~PopupMenu();

    Panel& panel() { return *panel_; }
    /// The menu as it is seen, without the room for its shadow.
    Rect frame() const;
    /// A line's rectangle in global coordinates, by its place in the menu.
    Rect frameOf(std::size_t line) const;
    std::optional<std::size_t> picked() const { return picked_; }

    // What the user does, at global points.
    void pointerMoved(Point at);
    void pressed(Point at);
    void released(Point at);
    void key(MenuKey key);
    /// A character was typed together with Control.
    void typed(char character);

    /// The menu is over: a line was chosen, or none. Called once; the menu may be destroyed in it.
    std::function<void(std::optional<std::size_t>)> onEnd;

private:
    struct Row {
        Rect frame;  // in the panel
        std::string title;
        std::string shortcut;  // at the right end; empty for none
        char key = 0;
        bool isEnabled = false;
        LayerRef label;
        LayerRef shortcutLabel;
    };

    void build(const Menu& menu, const TextMeasure& text);
    void addBody(Rect body);
    void addRow(const MenuItem& item, Rect frame, const TextMeasure& text);
    void place(const Place& place, Size size);
    void pick(std::optional<std::size_t> line);
    void paintTitle(const Row& row, bool isPicked);
    void step(int by);
    std::optional<std::size_t> lineAt(Point global) const;
    Point inPanel(Point global) const;
    void end(std::optional<std::size_t> line);

    Panels& panels_;
    LayerEngine& engine_;
    std::unique_ptr<Panel> panel_;
    Rect body_;  // in the panel
    LayerRef highlight_;
    std::vector<Row> rows_;
    std::optional<std::size_t> picked_;
    Point start_;
    Instant opened_;
    bool hasMoved_ = false;
    bool wasPressed_ = false;
    bool isOver_ = false;
};

}  // namespace quibbits
