#include "desktop/session/SysFolder.h"

#include <algorithm>
#include <charconv>
#include <fstream>

namespace quibbits::session {

namespace fs = std::filesystem;

std::optional<std::string> sysLine(const fs::path& file) {
    std::ifstream in(file);
    std::string text;
    if (!std::getline(in, text)) return std::nullopt;
    return text;
}

std::optional<int> sysNumber(const fs::path& file) {
    const auto text = sysLine(file);
    if (!text) return std::nullopt;
    int value = 0;
    const char* const end = text->data() + text->size();
    const auto [stop, error] = std::from_chars(text->data(), end, value);
    if (error != std::errc{} || stop != end) return std::nullopt;
    return value;
}

std::vector<fs::path> sysEntries(const fs::path& folder) {
    std::vector<fs::path> entries;
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
        entries.push_back(at->path());
    }
    std::ranges::sort(entries);
    return entries;
}

}  // namespace quibbits::session
