#include "atelier/Contact.h"

#include <algorithm>

#include "atelier/Portrait.h"

namespace quibbits::atelier {
namespace {

constexpr int enlargement = 4;
constexpr int gap = 2;
constexpr std::uint32_t grass = 0xff8fb08a;
constexpr std::uint32_t light = 0xfff6f6f4;
constexpr std::uint32_t dark = 0xff1c1e26;

/// An image that grows downwards row by row, each row on its own ground.
class Board {
public:
    explicit Board(int width) : width_{width} {}

    void add(const std::vector<Image>& cells, std::uint32_t ground) {
        int height = 0;
        for (const auto& cell : cells) height = std::max(height, cell.height);
        const int top = height_;
        height_ += height + gap;
        argb_.resize(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_), ground);
        int left = gap;
        for (const auto& cell : cells) {
            put(cell, left, top + height - cell.height);
            left += cell.width + gap;
        }
    }

    [[nodiscard]] Image image() const { return {width_, height_, argb_}; }

private:
    void put(const Image& cell, int left, int top) {
        auto pixel = cell.argb.begin();
        for (int y = top; y < top + cell.height; ++y) {
            for (int x = left; x < left + cell.width; ++x, ++pixel) {
                if (*pixel != 0 && x < width_) argb_[indexOf(x, y, width_)] = *pixel;
            }
        }
    }

    int width_;
    int height_ = 0;
    std::vector<std::uint32_t> argb_;
};

std::vector<Image> cutAll(const Strip& strip, const CellBox& box, const Palette& palette) {
    std::vector<Image> images;
    for (const auto& drawing : strip) images.push_back(cut(drawing, box, palette));
    return images;
}

int widthOf(const std::vector<Image>& cells) {
    int width = gap;
    for (const auto& cell : cells) width += cell.width + gap;
    return width;
}

std::vector<Image> portraits(const Form& form, const Palette& palette) {
    std::vector<Image> images;
    for (const auto& [mood, name] : moods) {
        images.push_back(paintPortrait(drawPortrait(form, mood), mood, palette));
    }
    return images;
}

}  // namespace

Image contactSheet(const Form& form) {
    const Paints paints = form.paints();
    const auto shift = groundShiftOf(form);
    struct Row {
        std::vector<Image> cells;
        std::uint32_t ground = grass;
    };
    std::vector<Row> rows;
    for (const auto& animation : animationsOf(form.build)) {
        const auto drawn = drawAnimation(form, shift, animation);
        const auto box = boxAround(drawn);
        if (animation.name == "Idle") {
            Strip turning;
            for (const auto& direction : drawn) turning.push_back(direction.front());
            rows.insert(rows.begin(), {{cutAll(turning, box, paints.plain), grass},
                                       {cutAll(turning, box, paints.shiny), grass},
                                       {portraits(form, paints.plain), grass},
                                       {portraits(form, paints.shiny), grass}});
        }
        rows.push_back({cutAll(drawn[facingRight], box, paints.plain), rows.size() % 3 == 0 ? grass
                                                                       : rows.size() % 3 == 1
                                                                           ? light
                                                                           : dark});
    }
    int width = 0;
    for (const auto& row : rows) width = std::max(width, widthOf(row.cells));
    Board board(width);
    for (const auto& row : rows) board.add(row.cells, row.ground);
    return enlarged(board.image(), enlargement);
}

Image strip(const Form& form, const Animation& animation) {
    const auto drawn = drawAnimation(form, groundShiftOf(form), animation);
    const auto cells = cutAll(drawn[facingRight], boxAround(drawn), form.paints().plain);
    Board board(widthOf(cells));
    board.add(cells, light);
    board.add(cells, dark);
    return enlarged(board.image(), enlargement);
}

}  // namespace quibbits::atelier
