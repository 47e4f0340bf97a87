#pragma once
// Which files of the desktop a creature has seen, and when it last visited each.

#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "body/Ground.h"
#include "platform/RunLoop.h"

namespace quibbits {

class FileMemory {
public:
    /// The files that were not there at the last look. The first look finds nothing new.
    std::vector<Ground> look(std::span<const Ground> ground);
    void visit(const Ground& file, Instant now);
    /// Not visited yet, or long ago.
    bool isDue(const Ground& file, Instant now) const;

private:
    std::optional<std::set<std::string>> known_;  // absent before the first look
    std::map<std::string, Instant> visited_;
};

}  // namespace quibbits
