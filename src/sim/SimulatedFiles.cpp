#include <filesystem>

#include "sim/SimulatedComputer.h"

namespace quibbits {

bool SimulatedFiles::isFolder(const std::string& path) const {
    const auto inside = files.lower_bound(path + "/");
    return inside != files.end() && inside->starts_with(path + "/");
}

std::string SimulatedFiles::fingerprint(const std::string& path) const {
    if (!files.contains(path)) return {};
    const auto known = details.find(path);
    const Details told = known == details.end() ? Details{} : known->second;
    return std::to_string(told.size) + " " + told.contents;
}

bool SimulatedFiles::moveToTrash(const std::string& path) {
    const bool moved = !stubborn.contains(path) && files.erase(path) > 0;
    if (moved) {
        details.erase(path);
        trash.push_back(path);
        tell(path);
    }
    if (onTrash) onTrash(path, moved);
    return moved;
}

std::optional<std::vector<FolderEntry>> SimulatedFiles::list(const std::string& folder) const {
    if (unreadable.contains(folder)) return std::nullopt;
    std::vector<FolderEntry> entries;
    for (const std::string& path : files) {
        const std::filesystem::path file(path);
        const std::string name = file.filename();
        if (file.parent_path() != folder || name.starts_with('.')) continue;
        FolderEntry entry{.name = name};
        if (!unreadable.contains(path)) {
            const auto known = details.find(path);
            const Details told = known == details.end() ? Details{} : known->second;
            entry.isRegularFile = true;
            entry.size = told.size;
            entry.created = told.created;
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

bool SimulatedFiles::contentsEqual(const std::string& one, const std::string& other,
                                   std::stop_token) const {
    ++comparisons;
    const auto readable = [this](const std::string& path) {
        return files.contains(path) && !unreadable.contains(path);
    };
    const auto bytes = [this](const std::string& path) {
        const auto known = details.find(path);
        return known == details.end() ? Details{}
                                      : Details{known->second.size, known->second.contents};
    };
    return readable(one) && readable(other) && bytes(one) == bytes(other);
}

std::optional<Subscription> SimulatedFiles::watch(
    const std::string& folder, std::function<void(const std::string& name)> changed) {
    if (unreadable.contains(folder)) return std::nullopt;
    return watched_[folder].subscribe(std::move(changed));
}

void SimulatedFiles::put(const std::string& path, Details told) {
    files.insert(path);
    details.insert_or_assign(path, std::move(told));
    tell(path);
}

void SimulatedFiles::tell(const std::string& path) {
    const std::filesystem::path file(path);
    const auto watchers = watched_.find(file.parent_path());
    if (watchers != watched_.end()) watchers->second.emit(file.filename().native());
}

}  // namespace quibbits
