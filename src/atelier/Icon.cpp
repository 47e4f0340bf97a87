#include "atelier/Icon.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "atelier/Atelier.h"
#include "atelier/Cast.h"
#include "atelier/Stamps.h"

namespace quibbits::atelier {
namespace {

/// The left half of a face; the right one is its mirror image, but for the glints in the eyes: one
/// lamp lights both.
struct Face {
    Stamp leftHalf;
    std::vector<Step> glints;
};

// l d s f h   the fur, from its line to its light
// T D C W     the tufts of the ears, likewise
// P           the stripe over the crown
// c e         cream and its shade
// i           the ears' inside and the cheeks
// K I         the eyes
// n m         nose and mouth
constexpr std::array<std::pair<char, std::uint32_t>, 17> colours{{{'l', 0xff54263a},
                                                                  {'d', 0xffa9503c},
                                                                  {'s', 0xffd5803a},
                                                                  {'f', 0xfff4b14c},
                                                                  {'h', 0xffffd873},
                                                                  {'T', 0xff1d4f7c},
                                                                  {'D', 0xff45bfe4},
                                                                  {'C', 0xff86eef4},
                                                                  {'W', 0xffffffff},
                                                                  {'P', 0xff623f80},
                                                                  {'c', 0xfffdeecb},
                                                                  {'e', 0xffe9c9a2},
                                                                  {'i', 0xffee9a8f},
                                                                  {'K', 0xff2b1830},
                                                                  {'I', 0xff7a4a86},
                                                                  {'n', 0xff6b3a44},
                                                                  {'m', 0xffa8604e}}};

constexpr std::uint32_t symbolicColour = 0xffbebebe;
constexpr std::string_view holes = "KIWn";

const Face& smallFace() {
    static const Face face{{{".TT.....",  //
                             ".TCT....",  //
                             ".TDCl...",  //
                             ".lfill..",  //
                             ".lfiifll",  //
                             "..lfhhhP",  //
                             ".lfhhhhP",  //
                             ".lfffffP",  //
                             "lffKKfff",  //
                             "lffKKfff",  //
                             "lffKKffc",  //
                             "liiffccn",  //
                             "lciifccc",  //
                             ".lccccmc",  //
                             "..llccce",  //
                             "....llll"}},
                           {{3, 8}, {11, 8}}};
    return face;
}

const Face& panelFace() {
    static const Face face{{{".TT........",  //
                             ".TCT.......",  //
                             ".TCCT......",  //
                             ".TDCCT.....",  //
                             ".lDDCfl....",  //
                             ".lfiiffl...",  //
                             ".lfiiifl...",  //
                             ".lsfiifllll",  //
                             "..lfifhhhhP",  //
                             "..lfhhhhhhP",  //
                             ".lfhhhhhhhP",  //
                             ".lffhhhhhhP",  //
                             "lffffKKffff",  //
                             "lfffKKKffff",  //
                             "lfffKKKfffc",  //
                             "lfffKKKffcc",  //
                             "lsiiffffccn",  //
                             "lciiffccccm",  //
                             ".lccccccmmc",  //
                             "..lcccccccc",  //
                             "...llccceee",  //
                             ".....llllll"}},
                           {{4, 13}, {15, 13}}};
    return face;
}

const Face& largeFace() {
    static const Face face{
        {{"...TT...........",  //
          "..TCCT..........",  //
          "..TWCCT.........",  //
          "..TWCCCT........",  //
          "..TDCCCT........",  //
          "..TDDCCCT.......",  //
          "..ldDDCCfl......",  //
          "..lfffDfffl.....",  //
          "..lfiiffffl.....",  //
          "..lfiiifffhl....",  //
          "..lfdiiiffhhllll",  //
          "..lsfdiiffhhhhhP",  //
          "...lffdfhhhhhhPP",  //
          "...lffffhhhhhhPP",  //
          "..lffffhhhhhhhPP",  //
          "..lfffhhhhhhhhhP",  //
          ".lffffhhhhhhhhhP",  //
          ".lfffffffffffffP",  //
          ".lffffKKKKffffff",  //
          "lfffffKKKKffffff",  //
          "lffffKKKKKffffff",  //
          "lffffKKKKKfffffc",  //
          "lffffKKKKKffffcc",  //
          "lsfffKKKIIffffcc",  //
          "lsffffKIIfffccnn",  //
          "lsiiiffffffccccn",  //
          "lcciiiffccccccem",  //
          ".lcccccccccmccmc",  //
          "..lccccccccemmec",  //
          "...llcccccccccce",  //
          ".....lllceeeeeee",  //
          "........llllllll"}},
        {{6, 19}, {7, 19}, {6, 20}, {7, 20}, {23, 19}, {24, 19}, {23, 20}, {24, 20}}};
    return face;
}

std::vector<std::string> rowsOf(const Face& face) {
    auto rows = face.leftHalf.rows;
    const auto right = mirrored(face.leftHalf).rows;
    for (std::size_t y = 0; y < rows.size(); ++y) rows[y] += right[y];
    for (const auto& [x, y] : face.glints) {
        rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] = 'W';
    }
    return rows;
}

std::uint32_t colourOf(char letter) {
    const auto* const found =
        std::ranges::find(colours, letter, &std::pair<char, std::uint32_t>::first);
    return found != colours.end() ? found->second : 0;
}

/// The face drawn for a size, or the largest one that fits in it a whole number of times.
const Face& faceFor(int size) {
    return size == 22 || size == 24 ? panelFace() : size % 32 == 0 ? largeFace() : smallFace();
}

/// The face enlarged as often as it fits, in the middle.
template <typename Colouring>
Image drawn(const Face& face, int size, Colouring colouring) {
    const auto rows = rowsOf(face);
    const int across = static_cast<int>(rows.size());
    const int factor = size / across;
    const int rim = (size - factor * across) / 2;
    Image image{size, size, {}};
    image.argb.resize(static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
    for (int y = 0; y < factor * across; ++y) {
        for (int x = 0; x < factor * across; ++x) {
            const char letter =
                rows[static_cast<std::size_t>(y / factor)][static_cast<std::size_t>(x / factor)];
            image.argb[indexOf(x + rim, y + rim, size)] = colouring(letter);
        }
    }
    return image;
}

}  // namespace

Image icon(int size) {
    return drawn(faceFor(size), size, colourOf);
}

Image symbolicIcon(int size) {
    return drawn(faceFor(size), size, [](char letter) {
        const bool hole = colourOf(letter) == 0 || holes.find(letter) != holes.npos;
        return hole ? 0U : symbolicColour;
    });
}

bool writeIcons(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    const auto write = [&](const std::string& name, const Image& image) {
        return writePng(folder / ("quibbits-" + name + ".png"), image);
    };
    return std::ranges::all_of(iconSizes,
                               [&](int size) { return write(std::to_string(size), icon(size)); }) &&
           std::ranges::all_of(symbolicSizes,
                               [&](int size) {
                                   return write("symbolic-" + std::to_string(size),
                                                symbolicIcon(size));
                               }) &&
           write("symbolic", symbolicIcon(22));
}

}  // namespace quibbits::atelier
