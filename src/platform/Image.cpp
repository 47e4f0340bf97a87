#include "platform/Image.h"

#include <algorithm>

namespace quibbits {

namespace {

bool fits(int width, int height, std::size_t count) {
    return width > 0 && height > 0 &&
           count >= static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
}

}  // namespace

Image Image::fromArgb(int width, int height, std::vector<Argb> pixels) {
    if (!fits(width, height, pixels.size())) return {};
    return of({.width = width, .colors = std::move(pixels), .indices = {}}, height);
}

Image Image::fromPalette(int width, int height, std::vector<std::uint8_t> indices,
                         std::vector<Argb> palette) {
    if (!fits(width, height, indices.size())) return {};
    const std::size_t used = 1u + *std::max_element(indices.begin(), indices.end());
    if (palette.size() < used) palette.resize(used, 0);
    return of({.width = width, .colors = std::move(palette), .indices = std::move(indices)},
              height);
}

Image Image::of(Store store, int height) {
    Image image;
    image.width_ = store.width;
    image.height_ = height;
    image.store_ = std::make_shared<const Store>(std::move(store));
    return image;
}

Image Image::cropped(int x, int y, int width, int height) const {
    // In 64 bits: a rectangle may be asked for that reaches past every number of pixels.
    const auto end = [](int from, int length, int most) {
        return static_cast<int>(std::min(std::int64_t{from} + length, std::int64_t{most}));
    };
    const int right = end(x, width, width_);
    const int bottom = end(y, height, height_);
    x = std::max(x, 0);
    y = std::max(y, 0);
    if (right <= x || bottom <= y) return {};
    Image part = *this;
    part.left_ = left_ + x;
    part.top_ = top_ + y;
    part.width_ = right - x;
    part.height_ = bottom - y;
    return part;
}

std::size_t Image::storedBytes() const {
    if (!store_) return 0;
    return store_->colors.size() * sizeof(Argb) + store_->indices.size();
}

}  // namespace quibbits
