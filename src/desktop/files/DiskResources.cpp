#include "desktop/files/DiskResources.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <span>

#include "codecs/Credits.h"
#include "codecs/Png.h"
#include "codecs/Xml.h"
#include "desktop/files/UserFolders.h"
#include "desktop/files/WholeFile.h"

namespace quibbits {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostCreditBytes = std::size_t{1} << 20;
constexpr std::size_t mostImageBytes = std::size_t{64} << 20;
constexpr std::string_view endChunk("\0\0\0\0IEND\xae\x42\x60\x82", 12);

bool isPlainName(std::string_view name) {
    return !name.empty() && name.front() != '.' &&
           name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

/// The size by the header, if the file also ends as a whole one does.
std::optional<PngInfo> headerOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::array<char, 64> head{};
    file.read(head.data(), head.size());
    if (!file) return std::nullopt;
    const auto info = pngInfo(std::as_bytes(std::span(head)));
    std::array<char, endChunk.size()> tail{};
    file.seekg(-static_cast<std::streamoff>(tail.size()), std::ios::end);
    file.read(tail.data(), tail.size());
    if (!file || std::string_view(tail.data(), tail.size()) != endChunk) return std::nullopt;
    return info;
}

}  // namespace

DiskResources::DiskResources(std::vector<fs::path> folders) : folders_(std::move(folders)) {}

fs::path DiskResources::userSheets() {
    return dataFolder() / "quibbits/sheets";
}

fs::path DiskResources::ownSheets() {
    std::error_code error;
    const auto program = fs::read_symlink("/proc/self/exe", error);
    return program.parent_path().parent_path() / "share/quibbits/sheets";
}

std::vector<fs::path> DiskResources::candidates(std::string_view name,
                                                std::string_view suffix) const {
    std::vector<fs::path> paths;
    if (!isPlainName(name)) return paths;
    for (const auto& folder : folders_) {
        auto path = folder / (std::string(name) + std::string(suffix));
        std::error_code error;
        if (fs::is_regular_file(path, error) && !broken_.contains(path)) {
            paths.push_back(std::move(path));
        }
    }
    return paths;
}

std::optional<Resources::PixelSize> DiskResources::imageSize(std::string_view name) const {
    for (const auto& path : candidates(name, ".png")) {
        if (const auto info = headerOf(path)) return PixelSize{info->width, info->height};
    }
    return std::nullopt;
}

Image DiskResources::imageRows(std::string_view name, int first, int count) const {
    if (first < 0 || count <= 0) return {};
    for (const auto& path : candidates(name, ".png")) {
        const auto info = headerOf(path);
        if (!info) continue;
        const int wanted = std::min(count, info->height - first);
        if (wanted <= 0) return {};
        const auto bytes = readWholeFile(path, mostImageBytes);
        auto decoded = bytes ? decodePng(std::as_bytes(std::span(*bytes)), {first, wanted})
                             : std::optional<DecodedImage>{};
        if (!decoded || decoded->height != wanted) {
            broken_.insert(path);
            continue;
        }
        if (!decoded->hasPalette()) {
            return Image::fromArgb(decoded->width, decoded->height, std::move(decoded->argb));
        }
        return Image::fromPalette(decoded->width, decoded->height, std::move(decoded->indices),
                                  std::move(decoded->palette));
    }
    return {};
}

std::optional<std::vector<XmlEvent>> DiskResources::xml(std::string_view name) const {
    std::optional<std::vector<XmlEvent>> found;
    for (const auto& path : candidates(name, ".xml")) {
        const auto text = readWholeFile(path, xmlMostBytes);
        if (!text) continue;
        auto events = xmlEvents(*text);
        const bool isEnough = isWhole(events);
        // What there is of a broken file comes last, where it replaces entries of the others.
        if (found) events.insert(events.end(), found->begin(), found->end());
        found = std::move(events);
        if (isEnough) break;
    }
    return found;
}

std::vector<Credit> DiskResources::credits() const {
    for (const auto& path : candidates("credits", ".json")) {
        const auto text = readWholeFile(path, mostCreditBytes);
        return (text ? readCredits(*text) : std::nullopt).value_or(std::vector<Credit>{});
    }
    return {};
}

}  // namespace quibbits
