#pragma once
// The user's files. The program reads them and moves them to the Trash; it never deletes one.

#include <string>

namespace quibbits {

class Files {
public:
    virtual ~Files() = default;
    virtual bool exists(const std::string& path) const = 0;
    /// The folder that the desktop shows, without a slash at its end.
    virtual std::string desktopFolder() const = 0;
    /// Moves a file, a folder or a link itself to the Trash. False when it stays where it is.
    virtual bool moveToTrash(const std::string& path) = 0;
};

}  // namespace quibbits
