#include "atelier/LineUp.h"

#include <algorithm>

namespace quibbits::atelier {
namespace {

constexpr int enlargement = 3;
constexpr int gap = 9;      // between two creatures, in pixels of theirs
constexpr int sky = 10;     // above the tallest
constexpr int meadow = 12;  // from the ground line down
constexpr int footing = 5;  // how far down the meadow they stand
constexpr int bandHeight = 7;

constexpr std::uint32_t skyTop = 0xffcfe6ea;
constexpr std::uint32_t skyBottom = 0xfff8ecd8;
constexpr std::uint32_t grass = 0xffb9d3a4;
constexpr std::uint32_t grassEdge = 0xff9dbd8d;
constexpr std::uint32_t shadow = 0xff9dbd8d;

bool isBlank(const Image& image, int column) {
    for (int y = 0; y < image.height; ++y) {
        if (image.argb[indexOf(column, y, image.width)] != 0) return false;
    }
    return true;
}

/// The picture without its clear columns at both sides.
Image trimmed(const Image& image) {
    int left = 0;
    int right = image.width;
    while (left < right && isBlank(image, left)) ++left;
    while (right > left && isBlank(image, right - 1)) --right;
    Image narrow{right - left, image.height, {}};
    for (int y = 0; y < image.height; ++y) {
        const auto row = image.argb.begin() + static_cast<std::ptrdiff_t>(y) * image.width;
        narrow.argb.insert(narrow.argb.end(), row + left, row + right);
    }
    return narrow;
}

/// The first frame of its idling; the last row of the picture is the ground.
Image standing(const Form& form, Coat coat) {
    const auto animations = animationsOf(form.build);
    const auto& idle = *std::ranges::find(animations, "Idle", &Animation::name);
    const auto strip = drawStrip(form, groundShiftOf(form), idle, facingRight);
    const CellBox box{frameCanvas.originX, 0, groundRow + 1};
    const Paints paints = form.paints();
    Image image =
        trimmed(cut(strip.front(), box, coat == Coat::plain ? paints.plain : paints.shiny));
    while (image.height > 1 && std::all_of(image.argb.begin(), image.argb.begin() + image.width,
                                           [](auto colour) { return colour == 0; })) {
        image.argb.erase(image.argb.begin(), image.argb.begin() + image.width);
        --image.height;
    }
    return image;
}

class Meadow {
public:
    Meadow(int width, int horizon) : image_{width, horizon + meadow, {}}, horizon_{horizon} {
        for (int y = 0; y < image_.height; ++y) {
            image_.argb.insert(image_.argb.end(), static_cast<std::size_t>(width), colourAt(y));
        }
    }

    void stand(const Image& creature, int left) {
        const int ground = horizon_ + footing;
        castShadow(left + creature.width / 2, creature.width / 2 - 1, ground);
        auto pixel = creature.argb.begin();
        for (int y = ground - creature.height + 1; y <= ground; ++y) {
            for (int x = left; x < left + creature.width; ++x, ++pixel) {
                if (*pixel != 0) at(x, y) = *pixel;
            }
        }
    }

    [[nodiscard]] const Image& image() const { return image_; }

private:
    [[nodiscard]] std::uint32_t colourAt(int y) const {
        if (y >= horizon_) return y == horizon_ ? grassEdge : grass;
        const int bands = horizon_ / bandHeight;
        return mixed(skyTop, skyBottom, static_cast<double>(y / bandHeight) / std::max(1, bands));
    }

    void castShadow(int middle, int reach, int ground) {
        for (int y = -1; y <= 2; ++y) {
            const int inset = y == -1 || y == 2 ? 4 : 0;
            for (int x = middle - reach + inset; x <= middle + reach - inset; ++x) {
                at(x, ground + y) = shadow;
            }
        }
    }

    std::uint32_t& at(int x, int y) { return image_.argb[indexOf(x, y, image_.width)]; }

    Image image_;
    int horizon_;
};

}  // namespace

Image lineUp(Coat coat) {
    std::vector<Image> creatures;
    int width = gap;
    int tallest = 0;
    for (const auto& form : forms()) {
        const auto& creature = creatures.emplace_back(standing(form, coat));
        width += creature.width + gap;
        tallest = std::max(tallest, creature.height);
    }
    Meadow meadowland(width, sky + tallest - footing);
    int left = gap;
    for (const auto& creature : creatures) {
        meadowland.stand(creature, left);
        left += creature.width + gap;
    }
    return enlarged(meadowland.image(), enlargement);
}

}  // namespace quibbits::atelier
