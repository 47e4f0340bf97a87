#include "creature/FileMemory.h"

#include <utility>

#include "creature/Life.h"

namespace quibbits {

namespace {

constexpr Seconds visitAgain = 300;

}  // namespace

std::vector<Ground> FileMemory::look(std::span<const Ground> ground) {
    std::vector<Ground> fresh;
    std::set<std::string> keys;
    for (const Ground& icon : ground) {
        if (icon.solid) continue;
        std::string key = fileKey(icon);
        if (known_ && !known_->contains(key)) fresh.push_back(icon);
        keys.insert(std::move(key));
    }
    known_ = std::move(keys);
    return fresh;
}

void FileMemory::visit(const Ground& file, Instant now) {
    visited_[fileKey(file)] = now;
}

bool FileMemory::isDue(const Ground& file, Instant now) const {
    const auto last = visited_.find(fileKey(file));
    return last == visited_.end() || now - last->second > visitAgain;
}

}  // namespace quibbits
