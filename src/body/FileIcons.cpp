#include "body/FileIcons.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "body/Pixels.h"

namespace quibbits {

namespace {

enum class Kind { other, text, picture, music, film, archive, program, folder };

/// Endings of names, in lower case.
constexpr std::array<std::pair<std::string_view, Kind>, 51> endings{{
    {"txt", Kind::text},     {"md", Kind::text},      {"pdf", Kind::text},
    {"doc", Kind::text},     {"docx", Kind::text},    {"odt", Kind::text},
    {"rtf", Kind::text},     {"epub", Kind::text},    {"csv", Kind::text},
    {"xls", Kind::text},     {"xlsx", Kind::text},    {"ods", Kind::text},
    {"html", Kind::text},    {"log", Kind::text},     {"png", Kind::picture},
    {"jpg", Kind::picture},  {"jpeg", Kind::picture}, {"gif", Kind::picture},
    {"webp", Kind::picture}, {"svg", Kind::picture},  {"heic", Kind::picture},
    {"bmp", Kind::picture},  {"tiff", Kind::picture}, {"avif", Kind::picture},
    {"mp3", Kind::music},    {"ogg", Kind::music},    {"flac", Kind::music},
    {"wav", Kind::music},    {"m4a", Kind::music},    {"opus", Kind::music},
    {"mp4", Kind::film},     {"mkv", Kind::film},     {"webm", Kind::film},
    {"mov", Kind::film},     {"avi", Kind::film},     {"zip", Kind::archive},
    {"gz", Kind::archive},   {"xz", Kind::archive},   {"bz2", Kind::archive},
    {"zst", Kind::archive},  {"7z", Kind::archive},   {"tar", Kind::archive},
    {"rar", Kind::archive},  {"iso", Kind::archive},  {"img", Kind::archive},
    {"deb", Kind::program},  {"rpm", Kind::program},  {"appimage", Kind::program},
    {"run", Kind::program},  {"sh", Kind::program},   {"exe", Kind::program},
}};

template <std::size_t n>
using Rows = std::array<std::string_view, n>;

constexpr Rows<18> page{
    "kkkkkkkkkk....",  //
    "kwwwwwwwwkk...",  //
    "kwwwwwwwwkgk..",  //
    "kwwwwwwwwkggk.",  //
    "kwwwwwwwwkkkkk",  //
    "kwwwwwwwwwwwgk",  //
    "kwwwwwwwwwwwgk",  //
    "kwwwwwwwwwwwgk",  //
    "kwwwwwwwwwwwgk",  //
    "kwwwwwwwwwwwgk",  //
    "kwwwwwwwwwwwgk",  //
    "kwwwwwwwwwwwgk",  //
    "kwwwwwwwwwwwgk",  //
    "kwwwwwwwwwwwgk",  //
    "kwwwwwwwwwwwgk",  //
    "kwwwwwwwwwwwgk",  //
    "kggggggggggggk",  //
    "kkkkkkkkkkkkkk",
};
constexpr std::size_t signRow = 6;
constexpr std::size_t signColumn = 2;

constexpr Rows<14> folderRows{
    "..kkkkkk..........",  //
    ".kNNNNNNk.........",  //
    "kNNNNNNNNkkkkkkkk.",  //
    "kNNNNNNNNNNNNNNNNk",  //
    "kYYYYYYYYYYYYYYYYk",  //
    "kYlllllllllllllNYk",  //
    "kYYYYYYYYYYYYYYNYk",  //
    "kYYYYYYYYYYYYYYNYk",  //
    "kYYYYYYYYYYYYYYNYk",  //
    "kYYYYYYYYYYYYYYNYk",  //
    "kYYYYYYYYYYYYYYNYk",  //
    "kYYYYYYYYYYYYYYNYk",  //
    "kZZZZZZZZZZZZZZZZk",  //
    ".kkkkkkkkkkkkkkkk.",
};

// Signs lie on the page; a dot lets it through.
constexpr Rows<9> textSign{
    "bbbbbbb...",  //
    "..........",  //
    "gggggggggg",  //
    "..........",  //
    "gggggggg..",  //
    "..........",  //
    "gggggggggg",  //
    "..........",  //
    "ggggg.....",
};
constexpr Rows<9> pictureSign{
    "nnnnnnnnnn",  //
    "nAAAAAAYYn",  //
    "nAAAAAAYYn",  //
    "nAAGAAAAAn",  //
    "nAGGGAAGAn",  //
    "nGGGGGGGGn",  //
    "nHGGGHGGGn",  //
    "nHHHHHHHHn",  //
    "nnnnnnnnnn",
};
constexpr Rows<9> musicSign{
    "...MMMMMM.",  //
    "...MMMMMM.",  //
    "...M....M.",  //
    "...M....M.",  //
    "...M....M.",  //
    ".LLM..LLM.",  //
    "LLLM.LLLM.",  //
    "LLL..LLL..",  //
    "..........",
};
constexpr Rows<9> filmSign{
    "kkkkkkkkkk",  //
    "kwkwkwkwkk",  //
    "kkkkkkkkkk",  //
    "kkkwkkkkkk",  //
    "kkkwwwkkkk",  //
    "kkkwkkkkkk",  //
    "kkkkkkkkkk",  //
    "kwkwkwkwkk",  //
    "kkkkkkkkkk",
};
constexpr Rows<9> archiveSign{
    "....kw....",  //
    "....wk....",  //
    "....kw....",  //
    "....wk....",  //
    "...NNNN...",  //
    "...NkkN...",  //
    "...NkkN...",  //
    "...NNNN...",  //
    "..........",
};
constexpr Rows<9> programSign{
    "kkkkkkkkkk",  //
    "kDDDDDDDDk",  //
    "kDGDDDDDDk",  //
    "kDDGDDDDDk",  //
    "kDDDGDDDDk",  //
    "kDDGDDDDDk",  //
    "kDGDDGGGDk",  //
    "kDDDDDDDDk",  //
    "kkkkkkkkkk",
};

Image pageWith(std::span<const std::string_view> sign) {
    std::vector<std::string> rows(page.begin(), page.end());
    for (std::size_t row = 0; row < sign.size(); ++row) {
        for (std::size_t column = 0; column < sign[row].size(); ++column) {
            if (sign[row][column] == '.') continue;
            rows[signRow + row][signColumn + column] = sign[row][column];
        }
    }
    const std::vector<std::string_view> drawn(rows.begin(), rows.end());
    return Pixels::image(drawn);
}

Kind kindOf(std::string_view path) {
    const std::string_view name = path.substr(path.rfind('/') + 1);
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos) return Kind::other;
    std::string ending(name.substr(dot + 1));
    std::ranges::transform(ending, ending.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const auto found =
        std::ranges::find(endings, std::string_view(ending), &decltype(endings)::value_type::first);
    return found == endings.end() ? Kind::other : found->second;
}

}  // namespace

const Image& iconForFile(const Files& files, const std::string& path) {
    static const std::array<Image, 8> pictures{pageWith({}),          pageWith(textSign),
                                               pageWith(pictureSign), pageWith(musicSign),
                                               pageWith(filmSign),    pageWith(archiveSign),
                                               pageWith(programSign), Pixels::image(folderRows)};
    const Kind kind = files.isFolder(path) ? Kind::folder : kindOf(path);
    return pictures[static_cast<std::size_t>(kind)];
}

}  // namespace quibbits
