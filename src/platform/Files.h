#pragma once
// The user's files. The program reads them and moves them to the Trash; it never deletes one.

#include <cstdint>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "platform/Date.h"
#include "platform/Signal.h"

namespace quibbits {

/// What lies in a folder.
struct FolderEntry {
    std::string name;
    bool isRegularFile = false;         // no folder, no link
    std::optional<std::uint64_t> size;  // bytes; nothing where it cannot be read
    std::optional<Date> created;        // nothing where the file system does not tell
    bool operator==(const FolderEntry&) const = default;
};

class Files {
public:
    virtual ~Files() = default;
    virtual bool exists(const std::string& path) const = 0;
    virtual bool isFolder(const std::string& path) const = 0;
    /// What tells a file from another that takes its name later, and from itself after a change.
    /// Empty for whatever is no regular file.
    virtual std::string fingerprint(const std::string& path) const = 0;
    /// The folder that the desktop shows, without a slash at its end.
    virtual std::string desktopFolder() const = 0;
    /// The folder that downloads go to, without a slash at its end.
    virtual std::string downloadsFolder() const = 0;
    /// Moves a file, a folder or a link itself to the Trash. False when it stays where it is.
    virtual bool moveToTrash(const std::string& path) = 0;

    /// What lies in a folder, hidden files left out, sorted by name; nothing when it cannot be
    /// listed. An entry that cannot be looked at is no regular file. Safe from any thread.
    virtual std::optional<std::vector<FolderEntry>> list(const std::string& folder) const = 0;
    /// Whether both are regular files that can be read and hold the same bytes. Reads both, which
    /// takes as long as it takes: not for the main thread. False when told to stop before the end.
    virtual bool contentsEqual(const std::string& one, const std::string& other,
                               std::stop_token stop) const = 0;
    /// Told on the main queue of each name that appears in the folder, goes away or is written to,
    /// until the handle ends; an empty name stands for any. Nothing when the folder cannot be
    /// watched.
    virtual std::optional<Subscription> watch(
        const std::string& folder, std::function<void(const std::string& name)> changed) = 0;
};

}  // namespace quibbits
