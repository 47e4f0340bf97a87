#pragma once
// Which applications are web browsers: by the words of their names, whatever edition or packaging
// they come in, and by what the desktop's files say of those that nobody has heard of.

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace quibbits {

/// Whether the words of a window class or a desktop file's id name a well-known browser.
bool soundsLikeBrowser(std::string_view name);

class Browsers {
public:
    /// Reads desktop files in these folders, when it first needs to.
    explicit Browsers(std::vector<std::filesystem::path> folders) : folders_(std::move(folders)) {}
    /// Names are in lower case; an empty one is none.
    bool contains(const std::string& name);

private:
    std::vector<std::filesystem::path> folders_;
    std::map<std::string, bool> known_;
};

}  // namespace quibbits
