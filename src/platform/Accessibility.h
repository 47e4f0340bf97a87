#pragma once
// The desktop's accessibility service, by which programs tell what they show and where it lies, and
// a window of another program as it tells of itself there: a tree of elements, read at one moment.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/Geometry.h"

namespace quibbits {

class Accessibility {
public:
    virtual ~Accessibility() = default;
    /// Whether programs tell it anything.
    virtual bool isTrusted() const = 0;
    /// Asks the desktop to let them; whether it does is seen later.
    virtual void askForTrust() = 0;
};

/// A place in AccessibleWindow::elements.
using ElementIndex = std::size_t;

/// What an element tells; everything may be missing.
struct AccessibleElement {
    std::string filename;
    std::string title;
    std::string value;
    std::optional<Rect> frame;  // global points
    std::vector<ElementIndex> children;
    std::optional<std::vector<ElementIndex>> selectedRows;  // of a list or table
    std::vector<ElementIndex> selectedChildren;
};

struct AccessibleWindow {
    std::vector<AccessibleElement> elements;  // the window itself first
};

}  // namespace quibbits
