#pragma once
// What files look like when they are eaten: a page with a sign of what is on it, or a folder.

#include <string>

#include "platform/Files.h"
#include "platform/Image.h"

namespace quibbits {

/// The picture for a file, by the end of its name; a folder has one of its own. A plain page where
/// the name tells nothing.
const Image& iconForFile(const Files& files, const std::string& path);

}  // namespace quibbits
