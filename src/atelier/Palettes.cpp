#include "atelier/Palettes.h"

#include <initializer_list>
#include <utility>

namespace quibbits::atelier {
namespace {

/// 0xRRGGBB from the outline up to the brightest tone.
struct Ramp {
    std::uint32_t line, deep, shade, base, light, high;
};

struct Coat {
    Material material;
    Ramp ramp;
};

struct NamedColour {
    char letter;
    std::uint32_t colour;
};

// Letters of the stamps. K pupil, W white, I iris, M and D mouth, m soft mouth line, T t tongue, N
// nose, R blush, B brow, S teeth, s soft teeth, G g glowing eye and its shade, E e spark and its
// rim, F bolt's edge, P p pattern on the back, k soft pupil, C tear, Q anger, V v scraps of fog.

constexpr Ramp creamRamp{0x6b3a44, 0xb98a7a, 0xe9c9a2, 0xfdeecb, 0xfffbe9, 0xffffff};
constexpr Ramp plumRamp{0x241633, 0x32204a, 0x462d63, 0x623f80, 0x8158a0, 0xa980c4};
constexpr Ramp cyanRamp{0x1d4f7c, 0x2c8cc0, 0x45bfe4, 0x86eef4, 0xd8fffb, 0xffffff};
constexpr Ramp rosySkin{0x5c2440, 0x9c4a5c, 0xc96f74, 0xee9a8f, 0xffb9a6, 0xffffff};
constexpr Ramp tealRamp{0x10303c, 0x184858, 0x216274, 0x2f8088, 0x58a8a8, 0x98d8d0};
constexpr Ramp lemonRamp{0x7a4a1c, 0xd09030, 0xf0bc48, 0xffe878, 0xfffbd0, 0xffffff};
constexpr Ramp lanternRamp{0x6e3a2c, 0xc07a34, 0xe8a83e, 0xffd966, 0xfff4b4, 0xffffff};
constexpr Ramp mintRamp{0x1d5a4a, 0x2f9a7a, 0x4fcaa0, 0x9cf5cc, 0xe2ffee, 0xffffff};
constexpr Ramp coralTongue{0x6a1c3e, 0xa83c5c, 0xd8586c, 0xff8c88, 0xffc0b0, 0xffffff};
constexpr Ramp tongueRamp{0x521c3e, 0x94345c, 0xc4507a, 0xe87898, 0xffa8b4, 0xffffff};
constexpr Ramp boneRamp{0x5a4a58, 0xa89278, 0xd4bf94, 0xfbeec4, 0xfffae6, 0xffffff};

constexpr std::uint32_t opaque = 0xff000000;

void dip(Palette& palette, Material material, const Ramp& ramp) {
    const auto line = opaque | ramp.line;
    const auto deep = opaque | ramp.deep;
    const auto put = [&](Tint tint, std::uint32_t colour) {
        palette[inkOf(material, tint)] = colour;
    };
    put(Tint::deep, deep);
    put(Tint::shade, opaque | ramp.shade);
    put(Tint::base, opaque | ramp.base);
    put(Tint::light, opaque | ramp.light);
    put(Tint::high, opaque | ramp.high);
    put(Tint::line, line);
    put(Tint::lineFirm, mixed(line, deep, 0.12));
    put(Tint::lineDark, mixed(line, deep, 0.30));
    put(Tint::lineSoft, mixed(line, deep, 0.45));
}

void name(Palette& palette, std::initializer_list<NamedColour> colours) {
    for (const auto& [letter, colour] : colours) palette[inkOf(letter)] = opaque | colour;
}

Palette painted(std::initializer_list<Coat> coats, std::initializer_list<NamedColour> colours) {
    Palette palette{};
    for (const auto& [material, ramp] : coats) dip(palette, material, ramp);
    name(palette, colours);
    name(palette, {{'W', 0xffffff}, {'C', 0x8fe0f8}, {'Q', 0xf04848}});
    return palette;
}

constexpr std::initializer_list<NamedColour> furryInks{
    {'K', 0x2b1830}, {'I', 0x7a4a86}, {'M', 0x5a2638}, {'m', 0xa8604e}, {'T', 0xee7f86},
    {'t', 0xc96f74}, {'N', 0x3a1c30}, {'R', 0xf08a6a}, {'B', 0x54263a}, {'S', 0xfffbe9},
    {'E', 0xd8fffb}, {'e', 0x58d8ee}, {'F', 0x1d5f94}, {'D', 0x3a1c30}, {'k', 0x5a3468}};

constexpr std::initializer_list<NamedColour> furryShinyInks{
    {'I', 0x2f8088}, {'k', 0x245c68}, {'E', 0xfffbd0}, {'e', 0xffe878},
    {'F', 0xa86a24}, {'R', 0xe8607c}, {'B', 0x4c2048}};

constexpr std::initializer_list<NamedColour> ghostInks{
    {'K', 0x14122c}, {'I', 0xe8a83e}, {'M', 0x151a38}, {'m', 0x27315e}, {'T', 0xe87898},
    {'t', 0xc4507a}, {'N', 0x151a38}, {'R', 0x8a78b8}, {'B', 0x151a38}, {'S', 0xfffae6},
    {'s', 0xd4bf94}, {'E', 0xfff4b4}, {'e', 0xffd966}, {'D', 0x120e26}, {'G', 0xffe98c},
    {'g', 0xf0b048}, {'k', 0x5a3468}};

constexpr std::initializer_list<NamedColour> ghostShinyInks{
    {'R', 0xd8708c}, {'E', 0xe2ffee}, {'e', 0x9cf5cc}, {'G', 0xc8ffe2},
    {'g', 0x6fd9b4}, {'T', 0xff8c88}, {'t', 0xd8586c}};

Paints furryPaints(const Ramp& coat, const Ramp& shinyCoat, const Ramp& tail,
                   const Ramp& shinyTail) {
    using enum Material;
    Paints paints{painted({{fur, coat},
                           {cream, creamRamp},
                           {paw, plumRamp},
                           {glow, cyanRamp},
                           {skin, rosySkin},
                           {fluff, tail}},
                          furryInks),
                  painted({{fur, shinyCoat},
                           {cream, creamRamp},
                           {paw, tealRamp},
                           {glow, lemonRamp},
                           {skin, rosySkin},
                           {fluff, shinyTail}},
                          furryInks)};
    name(paints.shiny, furryShinyInks);
    return paints;
}

struct GhostCoat {
    Ramp body, paws, fog;
};

constexpr Ramp roseFog{0x6a3c5c, 0xc08aa0, 0xe4b4bc, 0xfcdcd8, 0xfff6ec, 0xffffff};
constexpr Ramp roseMittens{0x5c2c50, 0xa87090, 0xcc94a8, 0xecbcc4, 0xfce0dc, 0xffffff};

Palette ghostPalette(const GhostCoat& coat, const Ramp& light) {
    using enum Material;
    Palette palette = painted({{fur, coat.body},
                               {cream, boneRamp},
                               {paw, coat.paws},
                               {glow, light},
                               {skin, tongueRamp},
                               {fluff, coat.fog}},
                              ghostInks);
    // Lines and markings are cut from the coat, so that they darken with it.
    const auto& body = coat.body;
    name(palette, {{'M', body.line},
                   {'N', body.line},
                   {'B', body.line},
                   {'m', body.deep},
                   {'P', body.deep},
                   {'p', body.shade},
                   {'V', coat.fog.shade},
                   {'v', coat.fog.base}});
    return palette;
}

Paints ghostPaints(const GhostCoat& plain, const GhostCoat& shiny) {
    Paints paints{ghostPalette(plain, lanternRamp), ghostPalette(shiny, mintRamp)};
    dip(paints.shiny, Material::skin, coralTongue);
    name(paints.shiny, ghostShinyInks);
    return paints;
}

constexpr Ramp amberTail{0x4f2036, 0x94433a, 0xbf6636, 0xdf8e3c, 0xf3b458, 0xffe09a};
constexpr Ramp roseTail{0x441c44, 0x8a3e68, 0xb45a80, 0xdc8298, 0xf4a8b4, 0xffd8d8};

}  // namespace

std::uint32_t mixed(std::uint32_t from, std::uint32_t to, double share) {
    std::uint32_t colour = opaque;
    for (const int shift : {0, 8, 16}) {
        const auto a = static_cast<double>(from >> shift & 0xff);
        const auto b = static_cast<double>(to >> shift & 0xff);
        colour |= static_cast<std::uint32_t>(a + (b - a) * share + 0.5) << shift;
    }
    return colour;
}

ToneLimits toneLimits(Material material) {
    switch (material) {
        case Material::cream: return {.shade = -0.75, .base = -0.30, .light = 0.90};
        case Material::glow: return {.shade = -0.40, .base = 0.0, .light = 0.60};
        default: return {};
    }
}

Paints mizzlePaints() {
    return furryPaints({0x63314a, 0xb5664a, 0xe2a04e, 0xfad06a, 0xffe99a, 0xfff8d0},
                       {0x5c2850, 0xb05a80, 0xe090a8, 0xfabcc4, 0xffdcdc, 0xfff4f0}, amberTail,
                       roseTail);
}

Paints sparrelPaints() {
    return furryPaints({0x54263a, 0xa9503c, 0xd5803a, 0xf4b14c, 0xffd873, 0xfff2b8},
                       {0x4c2048, 0x9c4a74, 0xc86c8c, 0xee9aac, 0xffc4c8, 0xffeaea}, amberTail,
                       roseTail);
}

Paints thrummetPaints() {
    return furryPaints({0x471f38, 0x8e3c38, 0xbf5f36, 0xe68c3f, 0xffb85c, 0xffe09a},
                       {0x401a40, 0x8a3a62, 0xb85478, 0xdc7a92, 0xf6a6b0, 0xffd8d8},
                       {0x3f1b30, 0x7a3230, 0xa65030, 0xd07a38, 0xf0a452, 0xffcf80},
                       {0x3a1a40, 0x743058, 0x9c466c, 0xc46884, 0xe898a8, 0xffd0d4});
}

Paints coralisPaints() {
    using enum Material;
    constexpr Ramp coral{0x6e2444, 0xb8455c, 0xe0646c, 0xff8f80, 0xffc0a4, 0xffe8d8};
    constexpr Ramp gold{0x6a3a10, 0xb87424, 0xe4a03c, 0xffcc64, 0xffeaa8, 0xffffff};
    constexpr Ramp water{0x2a6a94, 0x4a9cc4, 0x7cc8e4, 0xb4eaf4, 0xf0ffff, 0xffffff};
    Paints paints{painted({{fur, {0x143a57, 0x1f6380, 0x2b8c9c, 0x45bbb4, 0x86e2cc, 0xc8fbe4}},
                           {cream, creamRamp},
                           {paw, {0x152a50, 0x1d3c6a, 0x295488, 0x3a72a8, 0x5a98c8, 0x9cd0ee}},
                           {glow, coral},
                           {skin, coral},
                           {fluff, water}},
                          furryInks),
                  painted({{fur, {0x3c3460, 0x7a70a0, 0xa8a0c8, 0xdcd8ec, 0xf6f4ff, 0xffffff}},
                           {cream, creamRamp},
                           {paw, {0x2c1c58, 0x443078, 0x5c449c, 0x7c62bc, 0xa490dc, 0xd0c4f4}},
                           {glow, gold},
                           {skin, gold},
                           {fluff, water}},
                          furryInks)};
    name(paints.plain, {{'R', 0xff9a8a}, {'I', 0xe0646c}, {'B', 0x143a57}});
    name(paints.shiny, {{'R', 0xf0a0c0},
                        {'I', 0xb87424},
                        {'k', 0x5c449c},
                        {'B', 0x3c3460},
                        {'E', 0xfffbd0},
                        {'e', 0xffcc64},
                        {'F', 0xa86a24}});
    return paints;
}

Paints wispulPaints() {
    constexpr Ramp fog{0x34507c, 0x6c98bc, 0x98c4dc, 0xc8ecf4, 0xf0ffff, 0xffffff};
    return ghostPaints({.body = {0x24325e, 0x466498, 0x5f88b8, 0x82b2d8, 0xb4def0, 0xe0f8ff},
                        .paws = fog,
                        .fog = fog},
                       {.body = {0x50244c, 0x9c5c84, 0xc484a4, 0xe8b0c4, 0xfcd8dc, 0xfff4f0},
                        .paws = roseFog,
                        .fog = roseFog});
}

Paints gloamerPaints() {
    constexpr Ramp mittens{0x22356a, 0x6288b8, 0x94bcdc, 0xc4e6f4, 0xecfaff, 0xffffff};
    return ghostPaints({.body = {0x1b2549, 0x304a7c, 0x42659c, 0x5e88bc, 0x8cb8de, 0xc4e6f8},
                        .paws = mittens,
                        .fog = mittens},
                       {.body = {0x3c1638, 0x74345c, 0x984c74, 0xbc6c90, 0xdc9cb4, 0xf8d4dc},
                        .paws = roseMittens,
                        .fog = roseFog});
}

Paints umbroolPaints() {
    return ghostPaints({.body = {0x161c40, 0x2b3768, 0x3e5090, 0x566fb4, 0x809cd4, 0xb4d0f4},
                        .paws = {0x1c2450, 0x5470b0, 0x7c9cd4, 0xa8c8f0, 0xd4e8ff, 0xf4faff},
                        .fog = {0x27396a, 0x4a6a9c, 0x6f98c4, 0x9cc8e4, 0xd0f0fa, 0xffffff}},
                       {.body = {0x2c1030, 0x582856, 0x783a6e, 0x9c588a, 0xc28aae, 0xe4bcd4},
                        .paws = roseMittens,
                        .fog = roseFog});
}

}  // namespace quibbits::atelier
