#pragma once
// A guard of the Downloads folder on a simulated computer.

#include <memory>

#include "aware/DownloadsGuard.h"
#include "sim/SimulatedComputer.h"

namespace quibbits {

inline std::unique_ptr<DownloadsGuard> guardOn(SimulatedComputer& computer) {
    return std::make_unique<DownloadsGuard>(DownloadsGuard::World{.files = computer.files,
                                                                  .volumes = computer.volumes,
                                                                  .background = computer.background,
                                                                  .loop = computer.runLoop,
                                                                  .defaults = computer.defaults});
}

}  // namespace quibbits
