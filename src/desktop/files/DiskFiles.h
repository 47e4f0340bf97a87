#pragma once
// The user's files on the disk, and the Trash of the desktop: the one at home, and one on every
// other volume. A file is moved there by a rename within its file system or it stays; nothing is
// ever copied or deleted.

#include <filesystem>

#include "platform/Files.h"

namespace quibbits {

class DiskFiles final : public Files {
public:
    /// The folder of the home trash; usually homeTrash().
    explicit DiskFiles(std::filesystem::path trash);
    /// Trash in $XDG_DATA_HOME, or in ~/.local/share.
    static std::filesystem::path homeTrash();

    std::string desktopFolder() const override { return desktop_; }
    bool exists(const std::string& path) const override;
    /// Refuses relative paths. A symbolic link is moved itself.
    bool moveToTrash(const std::string& path) override;

private:
    std::filesystem::path trash_;
    std::string desktop_;
};

}  // namespace quibbits
