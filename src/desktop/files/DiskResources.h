#pragma once
// Pictures and descriptions in folders on the disk: the first folder that has a good file of the
// name gives it, so that a set of the user's own stands before the installed one.

#include <filesystem>
#include <set>

#include "platform/Resources.h"

namespace quibbits {

class DiskResources final : public Resources {
public:
    /// The folders in the order in which they are searched.
    explicit DiskResources(std::vector<std::filesystem::path> folders);
    /// quibbits/sheets in $XDG_DATA_HOME, or in ~/.local/share.
    static std::filesystem::path userSheets();
    /// Those that came with the program, found from where it lies.
    static std::filesystem::path ownSheets();

    std::optional<PixelSize> imageSize(std::string_view name) const override;
    Image imageRows(std::string_view name, int first, int count) const override;
    std::optional<std::vector<XmlEvent>> xml(std::string_view name) const override;
    /// From the first of the folders that has a list.
    std::vector<Credit> credits() const override;

private:
    std::vector<std::filesystem::path> candidates(std::string_view name,
                                                  std::string_view suffix) const;

    std::vector<std::filesystem::path> folders_;
    // Images whose header looked good and whose pixels were not: from then on they count as absent.
    mutable std::set<std::filesystem::path> broken_;
};

}  // namespace quibbits
