#pragma once
// An immutable picture that is copied freely: copies and crops share one store of pixels. Pixels
// are kept as palette indices where their source has a palette, which is a quarter of the memory.

#include <cstdint>
#include <memory>
#include <vector>

namespace quibbits {

/// A premultiplied pixel, 0xAARRGGBB.
using Argb = std::uint32_t;

class Image {
public:
    /// No picture: width and height 0.
    Image() = default;

    /// From width × height pixels, top row first. Fewer pixels than that give no picture.
    static Image fromArgb(int width, int height, std::vector<Argb> pixels);
    /// From width × height indices into the palette; an index past its end is transparent.
    static Image fromPalette(int width, int height, std::vector<std::uint8_t> indices,
                             std::vector<Argb> palette);

    int width() const { return width_; }
    int height() const { return height_; }
    explicit operator bool() const { return width_ > 0; }

    /// The pixel in column x of row y, row 0 at the top. Outside the picture it is transparent.
    Argb at(int x, int y) const {
        if (x < 0 || y < 0 || x >= width_ || y >= height_) return 0;
        return store_->pixel(x + left_, y + top_);
    }

    /// The part of the picture inside the rectangle, sharing its pixels. A rectangle that is empty
    /// or reaches outside is cut to the picture; nothing left gives no picture.
    Image cropped(int x, int y, int width, int height) const;

    /// Bytes held by the shared store.
    std::size_t storedBytes() const;

    /// True for the same part of the same store: an answer in constant time, never by pixels.
    bool operator==(const Image&) const = default;

private:
    struct Store {
        int width = 0;
        std::vector<Argb> colors;           // every pixel, or the palette
        std::vector<std::uint8_t> indices;  // empty without a palette
        Argb pixel(int x, int y) const {
            const auto i = static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                           static_cast<std::size_t>(x);
            return indices.empty() ? colors[i] : colors[indices[i]];
        }
    };
    static Image of(Store store, int height);

    std::shared_ptr<const Store> store_;
    int left_ = 0;
    int top_ = 0;
    int width_ = 0;
    int height_ = 0;
};

}  // namespace quibbits
