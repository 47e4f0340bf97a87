#pragma once
// A desktop that does not tell what it shows.

#include "platform/FileBrowser.h"

namespace quibbits {

class NoFileBrowser final : public FileBrowser {
public:
    std::optional<std::vector<DesktopIcon>> desktopIcons() override { return std::nullopt; }
};

}  // namespace quibbits
