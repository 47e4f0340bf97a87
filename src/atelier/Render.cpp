#include "atelier/Render.h"

#include "atelier/Cast.h"

namespace quibbits::atelier {
namespace {

// How far behind its neighbour, in pixels, a part must lie to be drawn apart from it.
constexpr double apart = 0.9;
constexpr double wellApart = 2.0;
constexpr double farApart = 2.2;

bool isBig(Part part) {
    return part == Part::body || part == Part::head || part == Part::tail;
}

/// The tint of a filled pixel: its tone, or an inner line where a nearer part overlaps it. The line
/// is drawn on the farther part, so the nearer one keeps its shape.
Tint innerTint(const CellGrid& grid, const Cell& cell, int x, int y) {
    double gap = 0;
    Part nearer = cell.part;
    for (const auto& step : neighbours) {
        const auto* other = grid.seen(x + step.x, y + step.y);
        if (other == nullptr || other->part == cell.part || other->depth - cell.depth <= gap) {
            continue;
        }
        gap = other->depth - cell.depth;
        nearer = other->part;
    }
    if (gap <= apart) return cell.tone;
    if (cell.tone == Tint::deep) return Tint::lineDark;
    if (gap > wellApart && (isBig(cell.part) || nearer == Part::tail)) return Tint::lineFirm;
    return gap > farApart ? Tint::lineSoft : Tint::deep;
}

/// The outline at an empty pixel, or no ink when nothing borders on it. It takes the line colour of
/// the nearest part and softens above and to the left of what the lamp lights.
Ink outlineInk(const CellGrid& grid, int x, int y) {
    const Cell* nearest = nullptr;
    bool lit = false;
    for (const auto& step : neighbours) {
        const auto* cell = grid.seen(x + step.x, y + step.y);
        if (cell == nullptr || (nearest != nullptr && cell->depth <= nearest->depth)) continue;
        nearest = cell;
        const bool fromLampSide = step.y > 0 || step.x > 0;
        lit = fromLampSide && cell->tone >= Tint::light;
    }
    if (nearest == nullptr) return noInk;
    return inkOf(nearest->material, lit ? Tint::lineSoft : Tint::line);
}

bool isClear(char letter) {
    return letter == '.' || letter == ' ';
}

/// Inks the letters of a stamp that lies at (left, top) where `shows(x, y)` allows it.
template <typename Shows>
void print(const Stamp& stamp, int left, int top, Drawing& drawing, Shows shows) {
    int y = top;
    for (const auto& letters : stamp.rows) {
        int x = left;
        for (const char letter : letters) {
            if (!isClear(letter) && shows(x, y)) drawing.at(x, y) = inkOf(letter);
            ++x;
        }
        ++y;
    }
}

void layDecals(const Model& model, const CellGrid& grid, Drawing& drawing) {
    for (const auto& decal : model.decals()) {
        print(decal.stamp, decal.x + drawing.originX, drawing.originY - decal.y, drawing,
              [&](int x, int y) {
                  const auto* cell = grid.seen(x, y);
                  return cell != nullptr && cell->part == decal.on;
              });
    }
}

}  // namespace

Drawing render(const Model& model, const Canvas& canvas) {
    const CellGrid grid = cast(model, canvas);
    Drawing drawing(canvas.width, canvas.height, canvas.originX, canvas.originY);
    for (int y = 0; y < canvas.height; ++y) {
        for (int x = 0; x < canvas.width; ++x) {
            const auto* cell = grid.seen(x, y);
            drawing.at(x, y) = cell != nullptr ? inkOf(cell->material, innerTint(grid, *cell, x, y))
                                               : outlineInk(grid, x, y);
        }
    }
    layDecals(model, grid, drawing);
    return drawing;
}

void scatterMotes(const Model& model, int groundRow, Drawing& drawing) {
    for (const auto& mote : model.motes()) {
        print(mote.stamp, mote.x + drawing.originX, drawing.originY - mote.y, drawing,
              [&](int x, int y) {
                  return drawing.holds(x, y) && y < groundRow &&
                         !(mote.behind && drawing.at(x, y) != noInk);
              });
    }
}

}  // namespace quibbits::atelier
