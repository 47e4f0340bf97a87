#include "body/Pixels.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace quibbits {

namespace {

struct Ink {
    char letter;
    std::uint32_t rgb;
};

constexpr std::array palette{
    Ink{'k', 0x181010}, Ink{'r', 0xF83850}, Ink{'p', 0xF898B0}, Ink{'w', 0xFFFFFF},
    Ink{'y', 0xF8E800}, Ink{'l', 0xFFF8A8}, Ink{'d', 0xA81830}, Ink{'g', 0xC0C0C8},
    Ink{'b', 0x4880F0}, Ink{'n', 0x2848A8}, Ink{'v', 0x58B840}, Ink{'P', 0xF898C0},
    Ink{'Q', 0xD05888}, Ink{'S', 0xA82018}, Ink{'c', 0xFFF4D6}, Ink{'C', 0xE0CC98},
    Ink{'U', 0x7058D0}, Ink{'V', 0x483090}, Ink{'T', 0x58C8D8}, Ink{'W', 0x2C8898},
    Ink{'Y', 0xF8E070}, Ink{'Z', 0xC0A030}, Ink{'G', 0x50C058}, Ink{'H', 0x2C7838},
    Ink{'L', 0x9070D8}, Ink{'M', 0x5838A0}, Ink{'R', 0xF04030}, Ink{'N', 0xF8C838},
    Ink{'D', 0x281038}, Ink{'E', 0x6030A0}, Ink{'F', 0xB060F0}, Ink{'I', 0xE8C8FF},
    Ink{'A', 0x98CCF0}, Ink{'B', 0xD8F0FF},
};
static_assert(palette.size() == 34);

constexpr Argb opaque = 0xFF000000u;
constexpr char outline = 'k';

Argb colorOf(char letter) {
    const auto found = std::ranges::find(palette, letter, &Ink::letter);
    return found == palette.end() ? 0 : opaque | found->rgb;
}

template <std::size_t n>
using Rows = std::array<std::string_view, n>;

constexpr Rows<6> heartRows{
    ".kk.kk.",  //
    "kwrkrrk",  //
    "krrrrpk",  //
    ".krrpk.",  //
    "..kpk..",  //
    "...k...",
};

constexpr Rows<5> sparkleRows{
    "..y..",  //
    "..l..",  //
    "ylwly",  //
    "..l..",  //
    "..y..",
};

constexpr Rows<7> boltRows{
    "...ky",  //
    "..kyk",  //
    ".kyyk",  //
    "kyyyk",  //
    ".kyk.",  //
    "kyk..",  //
    "yk...",
};

constexpr Rows<7> questionRows{
    ".UUU.",  //
    "UU.UU",  //
    "...UU",  //
    "..UU.",  //
    "..UU.",  //
    ".....",  //
    "..UU.",
};

constexpr Rows<6> exclaimRows{
    "RR",  //
    "RR",  //
    "RR",  //
    "RR",  //
    "..",  //
    "RR",
};

constexpr Rows<6> zzzRows{
    "bbbb...",  //
    "..bb...",  //
    ".bb....",  //
    "bbbbLLL",  //
    ".....L.",  //
    "....LLL",
};

constexpr Rows<7> noteRows{
    "...Q..",  //
    "...QQ.",  //
    "...Q.Q",  //
    "...Q.Q",  //
    ".QQQ..",  //
    "QQQQ..",  //
    ".QQ...",
};

constexpr Rows<9> fileRows{
    "kkkkk..",  //
    "kwwwkk.",  //
    "kwwwkBk",  //
    "kwwwkkk",  //
    "kwAAAwk",  //
    "kwwwwwk",  //
    "kwAAAwk",  //
    "kwwwwgk",  //
    "kkkkkkk",
};

constexpr Rows<8> azurineRows{
    "...vH...",  //
    "..kvkk..",  //
    ".kbbbbk.",  //
    "kbAbbbnk",  //
    "kAbbbbnk",  //
    "kbbbbnnk",  //
    ".knbnnk.",  //
    "..kkkk..",
};

constexpr Rows<8> blushumRows{
    "....v...",  //
    "..kHvk..",  //
    ".kPkPPk.",  //
    "kPwPPPQk",  //
    "kPPPPQQk",  //
    ".kPPPQk.",  //
    "..kPQk..",  //
    "...kk...",
};

constexpr Rows<8> cinnetRows{
    ".....vv.",  //
    "....kHk.",  //
    "..kkRRk.",  //
    ".kRRRRSk",  //
    "kRwRRRSk",  //
    "kRRRSSk.",  //
    "kRSSkk..",  //
    ".kkk....",
};

constexpr Rows<8> hazzelRows{
    "...kk...",  //
    ".kkZZkk.",  //
    "kZNZZNZk",  //
    "kkkkkkkk",  //
    "kLwLLLMk",  //
    "kLLLLLMk",  //
    ".kLLMMk.",  //
    "..kkkk..",
};

constexpr Rows<8> myrrowRows{
    "...kvk..",  //
    "..kGGk..",  //
    "..kGGHk.",  //
    ".kGlGGHk",  //
    "kGlGGGHk",  //
    "kGGGGGHk",  //
    ".kGGHHk.",  //
    "..kkkk..",
};

constexpr Rows<8> sourlingRows{
    "...kk...",  //
    "..kyZk..",  //
    ".kylyZk.",  //
    "kylyyyZk",  //
    "kyyyyyZk",  //
    ".kyyyZk.",  //
    "..kyZk..",  //
    "...kk...",
};

constexpr Rows<8> stormPebbleRows{
    "..kkkk..",  //
    ".kTTTyk.",  //
    "kBTTyTWk",  //
    "kTTyyTWk",  //
    "kTyyyyWk",  //
    "kTTyyTWk",  //
    ".kTyTWk.",  //
    "..kkkk..",
};

constexpr Rows<8> tetherLoopRows{
    "..kkkk..",  //
    ".kFFEEk.",  //
    "kFkkkkEk",  //
    "kFk..kEk",  //
    "kIk..kEk",  //
    ".kFkkEk.",  //
    "..kNNk..",  //
    "..kZZk..",
};

constexpr Rows<12> homeballRows{
    "....kNNk....",  //
    "..kkLLLLkk..",  //
    ".kLLLLLyLMk.",  //
    ".kLILLylyMk.",  //
    "kLIILLLyLMMk",  //
    "kLLLLLLLLMMk",  //
    "kNYYNNNNNZZk",  //
    "kZNNNNNNNZZk",  //
    "kTBTTTTTTTWk",  //
    ".kTBTTTTWWk.",  //
    "..kkTTWWkk..",  //
    "....kkkk....",
};
constexpr std::size_t homeballHalf = 6;

constexpr Rows<15> eggRows{
    "....kkkk....",  //
    "...kcccCk...",  //
    "..kcccccCk..",  //
    "..kcyycccCk.",  //
    ".kcyyyyccCk.",  //
    ".kcyyyycccCk",  //
    "kccyyycccyCk",  //
    "kcccccccyyCk",  //
    "kcccccccyyCk",  //
    "kcyycccccyCk",  //
    "kcyyycccccCk",  //
    "kCcyycyycCCk",  //
    ".kCcccyyCCk.",  //
    "..kCCCCCCk..",  //
    "...kkkkkk...",
};
constexpr std::size_t eggTopRows = 7;

constexpr Rows<10> gloomOrbRows{
    "...DDDD...",  //
    ".DDEEEEDD.",  //
    ".DEFFFEED.",  //
    "DEFIIFFEED",  //
    "DEFIFEEFED",  //
    "DEEFEFEFED",  //
    "DEEEFFEFED",  //
    ".DEEEEFED.",  //
    ".DDEEEEDD.",  //
    "...DDDD...",
};

constexpr Rows<8> salivaRows{
    "......AA........",  //
    "..AA.ABBAAA...A.",  //
    ".ABBABBBBBBA.ABA",  //
    ".ABwBBBBBBBBAABA",  //
    "..ABwBBBBBwBBBA.",  //
    ".ABBBBBBBBBBBA..",  //
    "AB.ABBAABBAABA.A",  //
    ".A..AA..AA..A...",
};

constexpr Rows<5> dripRows{
    ".A.",  //
    ".B.",  //
    "ABA",  //
    "ABw",  //
    ".A.",
};

constexpr Rows<9> handprintRows{
    ".E.E.E...",  //
    "EFEFEFE..",  //
    "EFEFEFE.E",  //
    "EFEFEFEEF",  //
    "EFFFFFEFE",  //
    "EFFFFFFE.",  //
    ".EFFFFE..",  //
    ".EFFFE...",  //
    "..EEE....",
};

template <std::size_t n>
constexpr bool even(const Rows<n>& rows, std::size_t width) {
    return std::ranges::all_of(rows, [=](auto row) { return row.size() == width; });
}
static_assert(even(heartRows, 7) && even(sparkleRows, 5) && even(boltRows, 5));
static_assert(even(questionRows, 5) && even(exclaimRows, 2) && even(zzzRows, 7));
static_assert(even(noteRows, 6) && even(fileRows, 7));
static_assert(even(azurineRows, 8) && even(blushumRows, 8) && even(cinnetRows, 8));
static_assert(even(hazzelRows, 8) && even(myrrowRows, 8) && even(sourlingRows, 8));
static_assert(even(stormPebbleRows, 8) && even(tetherLoopRows, 8));
static_assert(even(homeballRows, 12) && even(eggRows, 12) && even(gloomOrbRows, 10));
static_assert(even(salivaRows, 16) && even(dripRows, 3) && even(handprintRows, 9));

/// A transparent canvas with a picture drawn twice its size, its lower left corner given.
Image doubled(const Image& picture, int width, int height, int left, int bottom) {
    const Image big = Pixels::scaled(picture, 2);
    const int top = height - bottom - big.height();
    std::vector<Argb> pixels(static_cast<std::size_t>(width * height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            pixels[static_cast<std::size_t>(y * width + x)] = big.at(x - left, y - top);
        }
    }
    return Image::fromArgb(width, height, std::move(pixels));
}

}  // namespace

Image Pixels::image(std::span<const std::string_view> rows) {
    if (rows.empty()) return {};
    const std::size_t width = rows.front().size();
    std::vector<Argb> pixels;
    pixels.reserve(width * rows.size());
    for (const auto row : rows) {
        for (std::size_t col = 0; col < width; ++col) {
            pixels.push_back(col < row.size() ? colorOf(row[col]) : 0);
        }
    }
    return Image::fromArgb(static_cast<int>(width), static_cast<int>(rows.size()),
                           std::move(pixels));
}

Image Pixels::scaled(const Image& image, int by) {
    const int width = image.width() * by;
    const int height = image.height() * by;
    std::vector<Argb> pixels;
    pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) pixels.push_back(image.at(x / by, y / by));
    }
    return Image::fromArgb(width, height, std::move(pixels));
}

Image Pixels::cracked(std::span<const Cell> cells) {
    std::vector<std::string> copy(eggRows.begin(), eggRows.end());
    for (const Cell& cell : cells) {
        copy[static_cast<std::size_t>(cell.row)][static_cast<std::size_t>(cell.col)] = outline;
    }
    const std::vector<std::string_view> rows(copy.begin(), copy.end());
    return image(rows);
}

const Image& Pixels::heart() {
    static const Image picture = image(heartRows);
    return picture;
}
const Image& Pixels::sparkle() {
    static const Image picture = image(sparkleRows);
    return picture;
}
const Image& Pixels::bolt() {
    static const Image picture = image(boltRows);
    return picture;
}
const Image& Pixels::question() {
    static const Image picture = image(questionRows);
    return picture;
}
const Image& Pixels::exclaim() {
    static const Image picture = image(exclaimRows);
    return picture;
}
const Image& Pixels::zzz() {
    static const Image picture = image(zzzRows);
    return picture;
}
const Image& Pixels::note() {
    static const Image picture = image(noteRows);
    return picture;
}
const Image& Pixels::file() {
    static const Image picture = image(fileRows);
    return picture;
}

const Image& Pixels::item(Item item) {
    static const std::array<Image, allItems.size()> pictures{
        image(azurineRows), image(blushumRows),  image(cinnetRows),      image(hazzelRows),
        image(myrrowRows),  image(sourlingRows), image(stormPebbleRows), image(tetherLoopRows),
    };
    return pictures[static_cast<std::size_t>(item)];
}

const Image& Pixels::homeball() {
    static const Image picture = image(homeballRows);
    return picture;
}
const Image& Pixels::homeballTop() {
    static const Image picture = image(std::span(homeballRows).first<homeballHalf>());
    return picture;
}
const Image& Pixels::homeballBottom() {
    static const Image picture = image(std::span(homeballRows).subspan<homeballHalf>());
    return picture;
}

const Image& Pixels::egg() {
    static const Image picture = image(eggRows);
    return picture;
}
const Image& Pixels::eggTop() {
    static const Image picture = image(std::span(eggRows).first<eggTopRows>());
    return picture;
}
const Image& Pixels::eggBottom() {
    static const Image picture = image(std::span(eggRows).subspan<eggTopRows>());
    return picture;
}
const std::array<Image, 2>& Pixels::eggCracked() {
    static constexpr std::array<Cell, 4> first{{{6, 4}, {7, 5}, {6, 6}, {7, 7}}};
    static constexpr std::array<Cell, 8> second{
        {{6, 2}, {7, 3}, {6, 4}, {7, 5}, {6, 6}, {7, 7}, {6, 8}, {7, 9}}};
    static const std::array<Image, 2> pictures{cracked(first), cracked(second)};
    return pictures;
}
const Image& Pixels::eggInSlot() {
    static const Image picture = doubled(egg(), 32, 44, 1, 13);
    return picture;
}
const Image& Pixels::eggPortrait() {
    static const Image picture = doubled(egg(), 40, 40, 8, 5);
    return picture;
}

const Image& Pixels::gloomOrb() {
    static const Image picture = image(gloomOrbRows);
    return picture;
}
const Image& Pixels::saliva() {
    static const Image picture = image(salivaRows);
    return picture;
}
const Image& Pixels::drip() {
    static const Image picture = image(dripRows);
    return picture;
}
const Image& Pixels::handprint() {
    static const Image picture = image(handprintRows);
    return picture;
}

}  // namespace quibbits
