#pragma once
// The user's files on the disk, and the Trash of the desktop: the one at home, and one on every
// other volume. A file is moved there by a rename within its file system or it stays; nothing is
// ever copied or deleted.

#include <filesystem>

#include "platform/Files.h"

namespace quibbits {

class DiskFiles final : public Files {
public:
    /// Watches a folder, as Files::watch does.
    using Watcher = std::function<std::optional<Subscription>(
        const std::string& folder, std::function<void(const std::string& name)> changed)>;

    /// The folder of the home trash; usually homeTrash(). Without a watcher no folder can be
    /// watched.
    explicit DiskFiles(std::filesystem::path trash, Watcher watcher = {});
    /// Trash in $XDG_DATA_HOME, or in ~/.local/share.
    static std::filesystem::path homeTrash();

    std::string desktopFolder() const override { return desktop_; }
    /// With every link on the way to it followed.
    std::string downloadsFolder() const override { return downloads_; }
    bool exists(const std::string& path) const override;
    bool isFolder(const std::string& path) const override;
    std::string fingerprint(const std::string& path) const override;
    /// Refuses relative paths. A symbolic link is moved itself.
    bool moveToTrash(const std::string& path) override;

    std::optional<std::vector<FolderEntry>> list(const std::string& folder) const override;
    bool contentsEqual(const std::string& one, const std::string& other,
                       std::stop_token stop) const override;
    std::optional<Subscription> watch(
        const std::string& folder, std::function<void(const std::string& name)> changed) override {
        return watcher_ ? watcher_(folder, std::move(changed)) : std::nullopt;
    }

private:
    std::filesystem::path trash_;
    std::string desktop_;
    std::string downloads_;
    Watcher watcher_;
};

}  // namespace quibbits
