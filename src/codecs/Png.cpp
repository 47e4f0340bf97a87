#include "codecs/Png.h"

#include <png.h>

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstring>
#include <map>
#include <unordered_map>
#include <unordered_set>

// libpng reports errors by a long jump, which skips destructors. Every function here that sets the
// jump therefore holds plain values only and works on objects that its caller owns.

namespace quibbits {
namespace {

constexpr std::array<std::uint8_t, 8> signature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
constexpr std::size_t headerEnd = 26;  // signature, chunk length, "IHDR", size, depth and type

// Deflate packs at most 1032 bytes into one, so a header that promises more is lying. Checked
// before anything of the promised size is reserved.
constexpr std::uint64_t mostBytesInOne = 1032;

bool withinLimits(std::int64_t width, std::int64_t height) {
    return width > 0 && height > 0 && width <= pngLargestSide && height <= pngLargestSide &&
           width * height <= pngMostPixels;
}

std::uint32_t bigEndian(std::span<const std::byte> file, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value = value << 8 | std::to_integer<std::uint32_t>(file[at + i]);
    }
    return value;
}

std::uint32_t premultiplied(std::uint32_t red, std::uint32_t green, std::uint32_t blue,
                            std::uint32_t alpha) {
    const auto scaled = [alpha](std::uint32_t value) { return (value * alpha + 127) / 255; };
    return alpha << 24 | scaled(red) << 16 | scaled(green) << 8 | scaled(blue);
}

[[noreturn]] void giveUp(png_structp png, png_const_charp) {
    png_longjmp(png, 1);
}
void ignoreWarning(png_structp, png_const_charp) {}

struct Source {
    std::span<const std::byte> left;
};

void readBytes(png_structp png, png_bytep to, std::size_t count) {
    auto& source = *static_cast<Source*>(png_get_io_ptr(png));
    if (count > source.left.size()) png_error(png, "end of data");
    std::memcpy(to, source.left.data(), count);
    source.left = source.left.subspan(count);
}

/// libpng's two reading structures.
class Reader {
public:
    explicit Reader(std::span<const std::byte> file) : source_{file} {
        png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, giveUp, ignoreWarning);
        if (png == nullptr) return;
        info = png_create_info_struct(png);
        png_set_read_fn(png, &source_, readBytes);
        png_set_user_limits(png, pngLargestSide, pngLargestSide);
        png_set_chunk_malloc_max(png, png_alloc_size_t{8} << 20);
    }
    ~Reader() { png_destroy_read_struct(&png, &info, nullptr); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    [[nodiscard]] bool ready() const { return info != nullptr; }

    png_structp png = nullptr;
    png_infop info = nullptr;

private:
    Source source_;
};

struct Header {
    int width = 0;
    int height = 0;
    bool palette = false;
    bool interlaced = false;
    std::uint64_t packedBytes = 0;  // size of the pixels as the file packs them, before deflate
    std::size_t rowBytes = 0;       // size of a row as libpng hands it over
};

/// Reads up to the pixels and asks for rows of palette indices or of RGBA, 8 bits each.
bool readHeader(Reader& reader, Header& header) {
    if (setjmp(png_jmpbuf(reader.png)) != 0) return false;  // NOLINT: libpng's way
    png_read_info(reader.png, reader.info);
    header.width = static_cast<int>(png_get_image_width(reader.png, reader.info));
    header.height = static_cast<int>(png_get_image_height(reader.png, reader.info));
    header.palette = png_get_color_type(reader.png, reader.info) == PNG_COLOR_TYPE_PALETTE;
    header.interlaced = png_get_interlace_type(reader.png, reader.info) != PNG_INTERLACE_NONE;
    header.packedBytes = std::uint64_t{png_get_rowbytes(reader.png, reader.info)} *
                         static_cast<std::uint64_t>(header.height);
    if (header.palette) {
        png_set_packing(reader.png);
    } else {
        png_set_expand(reader.png);
        png_set_scale_16(reader.png);
        png_set_gray_to_rgb(reader.png);
        png_set_add_alpha(reader.png, 0xff, PNG_FILLER_AFTER);
    }
    png_set_interlace_handling(reader.png);
    png_read_update_info(reader.png, reader.info);
    header.rowBytes = png_get_rowbytes(reader.png, reader.info);
    return true;
}

/// The rows to keep: `count` of them from `first` on, packed without gaps into `kept`. Rows above
/// them go to `kept` as well and are written over.
struct Wanted {
    int first = 0;
    int count = 0;
    png_bytep kept = nullptr;
};

bool readRows(Reader& reader, const Header& header, const Wanted& wanted) {
    if (setjmp(png_jmpbuf(reader.png)) != 0) return false;  // NOLINT: libpng's way
    for (int row = 0; row < wanted.first; ++row) {
        png_read_row(reader.png, wanted.kept, nullptr);
    }
    for (int row = 0; row < wanted.count; ++row) {
        png_read_row(reader.png, wanted.kept + static_cast<std::size_t>(row) * header.rowBytes,
                     nullptr);
    }
    if (wanted.first + wanted.count == header.height) png_read_end(reader.png, nullptr);
    return true;
}

/// An interlaced file spreads every row over seven passes and can only be read whole.
bool readWhole(Reader& reader, png_bytepp rows) {
    if (setjmp(png_jmpbuf(reader.png)) != 0) return false;  // NOLINT: libpng's way
    png_read_image(reader.png, rows);
    png_read_end(reader.png, nullptr);
    return true;
}

std::optional<std::vector<std::uint8_t>> readPixels(Reader& reader, const Header& header,
                                                    const Wanted& rows) {
    const auto bytes = [&](int count) { return header.rowBytes * static_cast<std::size_t>(count); };
    if (!header.interlaced) {
        std::vector<std::uint8_t> kept(bytes(rows.count));
        if (!readRows(reader, header, {rows.first, rows.count, kept.data()})) return std::nullopt;
        return kept;
    }
    std::vector<std::uint8_t> whole(bytes(header.height));
    std::vector<png_bytep> starts;
    for (int row = 0; row < header.height; ++row) starts.push_back(whole.data() + bytes(row));
    if (!readWhole(reader, starts.data())) return std::nullopt;
    const auto start = whole.begin() + static_cast<std::ptrdiff_t>(bytes(rows.first));
    return std::vector<std::uint8_t>(start, start + static_cast<std::ptrdiff_t>(bytes(rows.count)));
}

std::vector<std::uint32_t> readPalette(const Reader& reader) {
    png_colorp colours = nullptr;
    int count = 0;
    png_get_PLTE(reader.png, reader.info, &colours, &count);
    png_bytep alphas = nullptr;
    int alphaCount = 0;
    png_get_tRNS(reader.png, reader.info, &alphas, &alphaCount, nullptr);
    std::vector<std::uint32_t> palette;
    for (int i = 0; i < count; ++i) {
        const std::uint32_t alpha = alphas != nullptr && i < alphaCount ? alphas[i] : 0xffU;
        palette.push_back(premultiplied(colours[i].red, colours[i].green, colours[i].blue, alpha));
    }
    return palette;
}

}  // namespace

std::optional<PngInfo> pngInfo(std::span<const std::byte> file) {
    if (file.size() < headerEnd) return std::nullopt;
    if (std::memcmp(file.data(), signature.data(), signature.size()) != 0) return std::nullopt;
    if (std::memcmp(file.data() + 12, "IHDR", 4) != 0) return std::nullopt;
    const std::int64_t width = bigEndian(file, 16);
    const std::int64_t height = bigEndian(file, 20);
    if (!withinLimits(width, height)) return std::nullopt;
    return PngInfo{static_cast<int>(width), static_cast<int>(height)};
}

std::optional<DecodedImage> decodePng(std::span<const std::byte> file, PngRows rows) {
    const auto size = pngInfo(file);
    if (!size || rows.first < 0 || rows.first >= size->height || rows.count <= 0) {
        return std::nullopt;
    }
    const int count = std::min(rows.count, size->height - rows.first);

    Reader reader(file);
    Header header;
    if (!reader.ready() || !readHeader(reader, header)) return std::nullopt;
    if (header.packedBytes > file.size() * mostBytesInOne) return std::nullopt;
    auto pixels = readPixels(reader, header, {rows.first, count, nullptr});
    if (!pixels) return std::nullopt;

    DecodedImage image{.width = size->width, .height = count};
    if (header.palette) {
        image.palette = readPalette(reader);
        image.indices = std::move(*pixels);
        if (*std::ranges::max_element(image.indices) >= image.palette.size()) return std::nullopt;
        return image;
    }
    image.argb.reserve(pixels->size() / 4);
    for (std::size_t i = 0; i + 3 < pixels->size(); i += 4) {
        const auto* rgba = pixels->data() + i;
        image.argb.push_back(premultiplied(rgba[0], rgba[1], rgba[2], rgba[3]));
    }
    return image;
}

namespace {

struct Rgba {
    std::uint8_t red = 0, green = 0, blue = 0, alpha = 0;
};

Rgba straight(std::uint32_t argb) {
    const std::uint32_t alpha = argb >> 24;
    const auto divided = [alpha](std::uint32_t value) {
        if (alpha == 0) return std::uint8_t{0};
        return static_cast<std::uint8_t>(std::min(255U, (value * 255 + alpha / 2) / alpha));
    };
    return {divided(argb >> 16 & 0xff), divided(argb >> 8 & 0xff), divided(argb & 0xff),
            static_cast<std::uint8_t>(alpha)};
}

/// Everything libpng needs to write a file.
struct Page {
    PngInfo size;
    int bitDepth = 8;
    int colourType = PNG_COLOR_TYPE_RGB_ALPHA;
    std::vector<png_color> palette;
    std::vector<png_byte> alphas;  // one for each of the first palette entries
    std::vector<std::uint8_t> pixels;
    std::size_t rowBytes = 0;
};

/// The colours in order of first appearance, see-through ones first so that the file need not list
/// the alpha of the others. Empty when there are more than a palette holds.
std::vector<std::uint32_t> paletteOf(std::span<const std::uint32_t> argb) {
    std::vector<std::uint32_t> colours;
    std::unordered_set<std::uint32_t> seen;
    for (const auto colour : argb) {
        if (!seen.insert(colour).second) continue;
        if (colours.size() == 256) return {};
        colours.push_back(colour);
    }
    std::stable_partition(colours.begin(), colours.end(),
                          [](auto colour) { return colour >> 24 != 0xff; });
    return colours;
}

/// A page of indices into colours, of which some may be the same.
Page indexedPage(PngInfo size, std::vector<std::uint8_t> indices,
                 std::span<const std::uint32_t> colours) {
    Page page{.size = size, .colourType = PNG_COLOR_TYPE_PALETTE, .pixels = std::move(indices)};
    const auto count = colours.size();
    page.bitDepth = count <= 2 ? 1 : count <= 4 ? 2 : count <= 16 ? 4 : 8;
    for (const auto colour : colours) {
        const auto [red, green, blue, alpha] = straight(colour);
        page.palette.push_back({red, green, blue});
        if (alpha != 0xff) page.alphas.resize(page.palette.size(), 0xff);
        if (alpha != 0xff) page.alphas.back() = alpha;
    }
    page.rowBytes = static_cast<std::size_t>(size.width);
    return page;
}

Page palettePage(PngInfo size, std::span<const std::uint32_t> argb,
                 std::span<const std::uint32_t> colours) {
    std::unordered_map<std::uint32_t, std::uint8_t> indexOf;
    for (const auto colour : colours) {
        indexOf.emplace(colour, static_cast<std::uint8_t>(indexOf.size()));
    }
    std::vector<std::uint8_t> indices;
    for (const auto colour : argb) indices.push_back(indexOf.at(colour));
    return indexedPage(size, std::move(indices), colours);
}

Page rgbaPage(PngInfo size, std::span<const std::uint32_t> argb) {
    Page page{.size = size};
    page.pixels.reserve(argb.size() * 4);
    for (const auto colour : argb) {
        const auto [red, green, blue, alpha] = straight(colour);
        page.pixels.insert(page.pixels.end(), {red, green, blue, alpha});
    }
    page.rowBytes = static_cast<std::size_t>(size.width) * 4;
    return page;
}

void appendBytes(png_structp png, png_bytep from, std::size_t count) {
    auto& out = *static_cast<std::vector<std::byte>*>(png_get_io_ptr(png));
    const auto* bytes = reinterpret_cast<const std::byte*>(from);
    out.insert(out.end(), bytes, bytes + count);
}

void flushNothing(png_structp) {}

bool writePage(png_structp png, png_infop info, const Page& page) {
    if (setjmp(png_jmpbuf(png)) != 0) return false;  // NOLINT: libpng's way
    png_set_compression_level(png, 9);
    png_set_compression_mem_level(png, 9);
    png_set_IHDR(png, info, static_cast<png_uint_32>(page.size.width),
                 static_cast<png_uint_32>(page.size.height), page.bitDepth, page.colourType,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (page.colourType == PNG_COLOR_TYPE_PALETTE) {
        png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
        png_set_PLTE(png, info, page.palette.data(), static_cast<int>(page.palette.size()));
        if (!page.alphas.empty()) {
            png_set_tRNS(png, info, page.alphas.data(), static_cast<int>(page.alphas.size()),
                         nullptr);
        }
    }
    png_write_info(png, info);
    png_set_packing(png);
    for (int row = 0; row < page.size.height; ++row) {
        png_write_row(png, page.pixels.data() + static_cast<std::size_t>(row) * page.rowBytes);
    }
    png_write_end(png, nullptr);
    return true;
}

std::vector<std::byte> fileOf(const Page& page) {
    std::vector<std::byte> file;
    png_structp png =
        png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, giveUp, ignoreWarning);
    if (png == nullptr) return {};
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &file, appendBytes, flushNothing);
    const bool written = info != nullptr && writePage(png, info, page);
    png_destroy_write_struct(&png, &info);
    if (!written) file.clear();
    return file;
}

bool fits(PngInfo size, std::size_t pixels) {
    return withinLimits(size.width, size.height) &&
           pixels == static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
}

}  // namespace

std::vector<std::byte> encodePng(PngInfo size, std::span<const std::uint32_t> argb) {
    if (!fits(size, argb.size())) return {};
    const auto colours = paletteOf(argb);
    return fileOf(colours.empty() ? rgbaPage(size, argb) : palettePage(size, argb, colours));
}

std::vector<std::vector<std::byte>> encodePngs(
    PngInfo size, const std::vector<std::vector<std::uint32_t>>& coats) {
    const auto alone = [&] {
        std::vector<std::vector<std::byte>> files;
        for (const auto& coat : coats) files.push_back(encodePng(size, coat));
        return files;
    };
    const bool allFit =
        std::ranges::all_of(coats, [&](const auto& coat) { return fits(size, coat.size()); });
    if (coats.empty() || !allFit) return alone();
    std::map<std::vector<std::uint32_t>, std::uint8_t> indexOf;  // by the colour in each coat
    std::vector<std::vector<std::uint32_t>> palettes(coats.size());
    std::vector<std::uint8_t> indices;
    std::vector<std::uint32_t> colours(coats.size());
    for (std::size_t i = 0; i < coats.front().size(); ++i) {
        for (std::size_t coat = 0; coat < coats.size(); ++coat) colours[coat] = coats[coat][i];
        const auto known = indexOf.find(colours);
        if (known == indexOf.end() && indexOf.size() == 256) return alone();
        if (known == indexOf.end()) {
            for (std::size_t coat = 0; coat < coats.size(); ++coat) {
                palettes[coat].push_back(colours[coat]);
            }
            indices.push_back(static_cast<std::uint8_t>(indexOf.size()));
            indexOf.emplace(colours, indices.back());
        } else {
            indices.push_back(known->second);
        }
    }
    std::vector<std::vector<std::byte>> files;
    for (const auto& palette : palettes)
        files.push_back(fileOf(indexedPage(size, indices, palette)));
    return files;
}

}  // namespace quibbits
