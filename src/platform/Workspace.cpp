#include "platform/Workspace.h"

#include <algorithm>

namespace quibbits {

std::optional<InstalledApplication> Workspace::installed(const std::string& id) const {
    const auto all = installed();
    const auto found = std::ranges::find(all, id, &InstalledApplication::id);
    if (found == all.end()) return std::nullopt;
    return *found;
}

}  // namespace quibbits
