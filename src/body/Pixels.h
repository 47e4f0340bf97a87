#pragma once
// The small pictures that are no sprite sheets: hearts, berries, the capsule, the egg, thought
// icons, particles. Each is drawn from rows of letters through one palette, once, when it is first
// used.

#include <array>
#include <span>
#include <string_view>

#include "platform/Image.h"
#include "rules/Item.h"

namespace quibbits::Pixels {

/// A picture from its rows, top row first, a letter a pixel. A letter that the palette does not
/// hold is transparent; the first row sets the width.
Image image(std::span<const std::string_view> rows);
/// The picture enlarged by a whole factor, with hard edges.
Image scaled(const Image& image, int by);

const Image& heart();
const Image& sparkle();
const Image& bolt();

// Thoughts.
const Image& question();
const Image& exclaim();
const Image& zzz();
const Image& note();
const Image& file();

/// The berry or evolution item.
const Image& item(Item item);

// The capsule and the egg, and the halves that they open into.
const Image& homeball();
const Image& homeballTop();
const Image& homeballBottom();
const Image& egg();
const Image& eggTop();
const Image& eggBottom();
/// The crack growing across the shell.
const std::array<Image, 2>& eggCracked();
/// The egg at twice its size, placed for the dial's slot (32 × 44) and for a portrait (40 × 40).
const Image& eggInSlot();
const Image& eggPortrait();

struct Cell {
    int row = 0;
    int col = 0;
};
/// The egg with the given cells drawn in the outline's colour.
Image cracked(std::span<const Cell> cells);

// What ghosts throw, drip and leave behind.
const Image& gloomOrb();
const Image& saliva();
const Image& drip();
const Image& handprint();

}  // namespace quibbits::Pixels
