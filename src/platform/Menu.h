#pragma once
// A popup menu, as plain values.

#include <functional>
#include <string>
#include <vector>

namespace quibbits {

/// A line of a popup menu. A title alone is a disabled line; no title is a separator.
struct MenuItem {
    std::string title;
    std::function<void()> run;
    char key = 0;  // that chooses the line together with Control while the menu is open; lower case
};
struct Menu {
    std::vector<MenuItem> items;
};

}  // namespace quibbits
