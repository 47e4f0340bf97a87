#include "aware/AX.h"

namespace quibbits {

std::optional<std::pair<ElementIndex, std::string>> AX::named(const AccessibleWindow& window,
                                                              ElementIndex element, int depth) {
    const AccessibleElement& here = window.elements.at(element);
    for (const std::string* name : {&here.filename, &here.title, &here.value}) {
        if (!name->empty()) return std::pair{element, *name};
    }
    if (depth < 1) return std::nullopt;
    for (const ElementIndex child : here.children) {
        if (auto found = named(window, child, depth - 1)) return found;
    }
    return std::nullopt;
}

}  // namespace quibbits
