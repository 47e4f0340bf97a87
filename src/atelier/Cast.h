// The first half of drawing: which part, material and tone every pixel shows.
#pragma once

#include <vector>

#include "atelier/Render.h"

namespace quibbits::atelier {

struct Cell {
    bool filled = false;
    Part part = Part::body;
    Material material = Material::fur;
    Tint tone = Tint::base;  // one of the five lit tones
    double depth = 0;        // towards the viewer

    [[nodiscard]] bool alike(const Cell& other) const {
        return part == other.part && material == other.material;
    }
};

struct CellGrid {
    int width = 0;
    int height = 0;
    std::vector<Cell> cells;

    [[nodiscard]] Cell& at(int x, int y) { return cells[indexOf(x, y, width)]; }
    /// The cell when it is inside and filled, else nothing.
    [[nodiscard]] const Cell* seen(int x, int y) const {
        if (x < 0 || y < 0 || x >= width || y >= height) return nullptr;
        const Cell& cell = cells[indexOf(x, y, width)];
        return cell.filled ? &cell : nullptr;
    }
};

struct Step {
    int x = 0;
    int y = 0;
};
/// Below, right, left, above.
constexpr Step neighbours[4] = {{0, 1}, {1, 0}, {-1, 0}, {0, -1}};

/// Casts rays at every pixel and cleans up what they leave ragged.
CellGrid cast(const Model& model, const Canvas& canvas);

}  // namespace quibbits::atelier
