#pragma once
// A watch on the names in a folder, through the kernel.

#include <functional>
#include <optional>
#include <string>

#include "desktop/EventRunLoop.h"

namespace quibbits {

/// Tells of each name that appears in the folder, goes away or is written to, until the handle
/// ends; an empty name stands for any. A file that is written all the time is told of twice a
/// second. Nothing when there is no such folder, or it may not be watched. When the folder itself
/// goes away the watch is over without a word.
std::optional<Subscription> watchFolder(EventRunLoop& loop, const std::string& folder,
                                        std::function<void(const std::string& name)> changed);

}  // namespace quibbits
