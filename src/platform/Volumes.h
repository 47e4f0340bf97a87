#pragma once
// The volumes that are mounted, and the disk images that some of them come from.

#include <map>
#include <optional>
#include <string>

#include "platform/Signal.h"

namespace quibbits {

class Volumes {
public:
    virtual ~Volumes() = default;
    /// For each mounted disk image the path of its file, by the path that it is mounted at. Nothing
    /// when the system does not tell.
    virtual std::optional<std::map<std::string, std::string>> images() const = 0;

    Signal<> mounted;
    Signal<const std::string&> unmounted;  // the path that it was mounted at
};

}  // namespace quibbits
