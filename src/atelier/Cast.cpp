#include "atelier/Cast.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

#include "atelier/Palettes.h"

namespace quibbits::atelier {
namespace {

// Each pixel is cast as a square of rays and belongs to whatever most of them hit.
constexpr int raysAcross = 4;
constexpr int raysNeeded = raysAcross * raysAcross / 2;

// The lamp stands still while creatures turn. More from the side, and right-facing views go muddy.
const Vec3 lamp = normalised({-0.30, 0.80, 0.62});

// Where one part stands close before the lamp of another, the light drops. Straighter than the
// lamp, so that a chin shades the chest whichever way the creature faces.
const Vec3 shadeRay = normalised({-0.18, 1.0, 0.30});
constexpr double shadeNearest = 0.6;
constexpr double shadeFarthest = 5.0;
constexpr double shadeLoss = 0.35;
constexpr double shadeCeiling = 0.10;

using Candidates = std::vector<const Primitive*>;

constexpr double everywhere = 1e9;

struct Box {
    double left = 0, right = 0, bottom = 0, top = 0;
};

bool meets(const Primitive& p, const Box& box) {
    return p.left < box.right && p.right > box.left && p.bottom < box.top && p.top > box.bottom;
}

void gather(const Candidates& from, const Box& box, Candidates& into) {
    into.clear();
    std::ranges::copy_if(from, std::back_inserter(into),
                         [&](const Primitive* p) { return meets(*p, box); });
}

struct Hit {
    const Primitive* primitive = nullptr;
    Vec3 unit;  // on the unit sphere
    double depth = -1e9;
};

/// The surface nearest to the viewer on the ray through (x, y).
Hit nearest(const Candidates& candidates, double x, double y) {
    Hit hit;
    for (const auto* p : candidates) {
        if (p->front < hit.depth) break;  // they come front to back
        if (x < p->left || x > p->right || y < p->bottom || y > p->top) continue;
        const Vec3 along = p->toUnit.z;
        const Vec3 from = p->toUnit * Vec3{x - p->centre.x, y - p->centre.y, 0};
        const double a = dot(along, along);
        const double b = dot(from, along);
        const double inside = b * b - a * (dot(from, from) - 1);
        if (inside < 0) continue;
        const double z = (-b + std::sqrt(inside)) / a;
        if (z + p->centre.z > hit.depth) hit = {p, from + along * z, z + p->centre.z};
    }
    return hit;
}

bool isShaded(const Candidates& shaders, Vec3 point, Part part) {
    // The box of the stretch of the ray that counts: most primitives are ruled out by it.
    const Box reach{point.x + shadeRay.x * shadeFarthest, point.x + shadeRay.x * shadeNearest,
                    point.y + shadeRay.y * shadeNearest, point.y + shadeRay.y * shadeFarthest};
    const double deepest = point.z + shadeRay.z * shadeFarthest;
    return std::ranges::any_of(shaders, [&](const Primitive* p) {
        if (p->part == part || p->front < point.z || p->back > deepest) return false;
        if (!meets(*p, reach)) return false;
        const Vec3 from = p->toUnit * (point - p->centre);
        const Vec3 ray = p->toUnit * shadeRay;
        const double a = dot(ray, ray);
        const double b = dot(from, ray);
        const double inside = b * b - a * (dot(from, from) - 1);
        if (inside < 0) return false;
        const double half = std::sqrt(inside);
        return (-b + half) / a >= shadeNearest && (-b - half) / a <= shadeFarthest;
    });
}

Tint toneOf(Material material, double light) {
    const auto limits = toneLimits(material);
    return light < limits.shade   ? Tint::deep
           : light < limits.base  ? Tint::shade
           : light < limits.light ? Tint::base
           : light < limits.high  ? Tint::light
                                  : Tint::high;
}

/// The rays of one pixel that agree on part and material.
struct Vote {
    Part part = Part::body;
    Material material = Material::fur;
    int count = 0;
    double light = 0;
    double depth = 0;
};

struct Ballot {
    std::array<Vote, raysAcross * raysAcross> votes;
    int used = 0;
    int rays = 0;

    void add(Part part, Material material, double light, double depth) {
        ++rays;
        auto* const end = votes.data() + used;
        auto* vote = std::find_if(votes.data(), end, [&](const Vote& v) {
            return v.part == part && v.material == material;
        });
        if (vote == end) {
            *vote = {part, material};
            ++used;
        }
        ++vote->count;
        vote->light += light;
        vote->depth += depth;
    }

    [[nodiscard]] Cell winner() const {
        const auto& best = *std::max_element(votes.data(), votes.data() + used, fewer);
        return {true, best.part, best.material, toneOf(best.material, best.light / best.count),
                best.depth / best.count};
    }

private:
    static bool fewer(const Vote& a, const Vote& b) {
        if (a.count != b.count) return a.count < b.count;
        if (a.part != b.part) return a.part > b.part;
        return a.material > b.material;
    }
};

class Caster {
public:
    explicit Caster(const Model& model) {
        for (const auto& primitive : model.primitives()) all_.push_back(&primitive);
        std::ranges::stable_sort(all_, std::ranges::greater{}, &Primitive::front);
    }

    /// Goes on to the row of pixels whose upper edge lies at `top`.
    void beginRow(double top) {
        top_ = top;
        gather(all_, {-everywhere, everywhere, top - 1, top}, row_);
        gather(all_, {-everywhere, everywhere, top - 1, top + shadeRay.y * shadeFarthest},
               shadersOfRow_);
    }

    /// The pixel of the row whose left edge lies at `left`.
    Cell pixel(double left) {
        gather(row_, {left, left + 1, top_ - 1, top_}, candidates_);
        if (candidates_.empty()) return {};
        gather(shadersOfRow_,
               {left + shadeRay.x * shadeFarthest, left + 1, -everywhere, everywhere}, shaders_);
        Ballot ballot;
        for (int row = 0; row < raysAcross; ++row) {
            for (int column = 0; column < raysAcross; ++column) {
                sample(left + (column + 0.5) / raysAcross, top_ - (row + 0.5) / raysAcross, ballot);
            }
        }
        return ballot.rays >= raysNeeded ? ballot.winner() : Cell{};
    }

private:
    void sample(double x, double y, Ballot& ballot) const {
        const Hit hit = nearest(candidates_, x, y);
        if (hit.primitive == nullptr) return;
        const auto& p = *hit.primitive;
        double light = dot(normalised(p.normalToWorld * hit.unit), lamp);
        if (isShaded(shaders_, {x, y, hit.depth}, p.part)) {
            light = std::min(light - shadeLoss, shadeCeiling);
        }
        ballot.add(p.part, p.markings ? p.markings(hit.unit) : p.material, light, hit.depth);
    }

    Candidates all_;
    Candidates row_;
    Candidates shadersOfRow_;
    Candidates candidates_;
    Candidates shaders_;
    double top_ = 0;
};

void closePinholesAndDropSpecks(CellGrid& grid) {
    for (int y = 0; y < grid.height; ++y) {
        for (int x = 0; x < grid.width; ++x) {
            int filled = 0;
            const Cell* last = nullptr;
            for (const auto& step : neighbours) {
                if (const auto* cell = grid.seen(x + step.x, y + step.y)) {
                    ++filled;
                    last = cell;
                }
            }
            auto& cell = grid.at(x, y);
            if (cell.filled && filled == 0) cell = {};
            if (!cell.filled && filled == 4) cell = *last;
        }
    }
}

/// A single pixel on a straight edge of five or more: where a round shape just reaches into a row,
/// its outline would stand off as a wart.
bool isWart(const CellGrid& grid, int x, int y) {
    if (grid.seen(x, y) == nullptr) return false;
    Step towards;
    int filled = 0;
    for (const auto& step : neighbours) {
        if (grid.seen(x + step.x, y + step.y) == nullptr) continue;
        ++filled;
        towards = step;
    }
    if (filled != 1) return false;
    const auto* base = grid.seen(x + towards.x, y + towards.y);
    const bool hangs = towards.y < 0;  // whatever it lies on would stand on its point
    return std::ranges::all_of(std::array{-2, -1, 1, 2}, [&](int along) {
        const auto* edge =
            grid.seen(x + towards.x + along * towards.y, y + towards.y + along * towards.x);
        return edge != nullptr && (hangs || edge->part == base->part);
    });
}

void smoothWarts(CellGrid& grid) {
    std::vector<Step> warts;
    for (int y = 0; y < grid.height; ++y) {
        for (int x = 0; x < grid.width; ++x) {
            if (isWart(grid, x, y)) warts.push_back({x, y});
        }
    }
    for (const auto& [x, y] : warts) grid.at(x, y) = {};
}

/// A pixel whose material stands alone among its neighbours takes the one most of them share.
void joinLonelyMaterials(CellGrid& grid) {
    for (int y = 0; y < grid.height; ++y) {
        for (int x = 0; x < grid.width; ++x) {
            auto& cell = grid.at(x, y);
            if (!cell.filled) continue;
            std::array<int, materialCount> count{};
            for (const auto& step : neighbours) {
                if (const auto* other = grid.seen(x + step.x, y + step.y)) {
                    ++count[static_cast<std::size_t>(other->material)];
                }
            }
            if (count[static_cast<std::size_t>(cell.material)] > 0) continue;
            const auto most = std::ranges::max_element(count);
            if (*most < 2) continue;
            const auto material = static_cast<Material>(most - count.begin());
            for (const auto& step : neighbours) {
                const auto* other = grid.seen(x + step.x, y + step.y);
                if (other == nullptr || other->material != material) continue;
                cell = *other;
                break;
            }
        }
    }
}

/// Patches of one tone that are only a pixel or two in size read as noise.
class ToneSmoother {
public:
    explicit ToneSmoother(CellGrid& grid) : grid_{grid}, labelled_(grid.cells.size(), false) {}

    void run() {
        for (int y = 0; y < grid_.height; ++y) {
            for (int x = 0; x < grid_.width; ++x) {
                if (grid_.seen(x, y) == nullptr || labelled_[index(x, y)]) continue;
                flood(x, y);
                if (patch_.size() <= 2) repaint();
            }
        }
    }

private:
    [[nodiscard]] std::size_t index(int x, int y) const { return indexOf(x, y, grid_.width); }

    void flood(int x, int y) {
        patch_.assign(1, {x, y});
        bordering_.fill(0);
        labelled_[index(x, y)] = true;
        const Cell first = grid_.at(x, y);
        for (std::size_t i = 0; i < patch_.size(); ++i) {
            const Step at = patch_[i];
            for (const auto& step : neighbours) {
                const Step next{at.x + step.x, at.y + step.y};
                const auto* cell = grid_.seen(next.x, next.y);
                if (cell == nullptr || !cell->alike(first)) continue;
                if (cell->tone != first.tone) {
                    ++bordering_[static_cast<std::size_t>(cell->tone)];
                } else if (!labelled_[index(next.x, next.y)]) {
                    labelled_[index(next.x, next.y)] = true;
                    patch_.push_back(next);
                }
            }
        }
    }

    void repaint() {
        const auto most = std::ranges::max_element(bordering_);
        if (*most == 0) return;
        for (const auto& at : patch_) {
            grid_.at(at.x, at.y).tone = static_cast<Tint>(most - bordering_.begin());
        }
    }

    CellGrid& grid_;
    std::vector<bool> labelled_;
    std::vector<Step> patch_;
    std::array<int, 5> bordering_{};
};

}  // namespace

CellGrid cast(const Model& model, const Canvas& canvas) {
    CellGrid grid{canvas.width, canvas.height, {}};
    grid.cells.resize(static_cast<std::size_t>(canvas.width) *
                      static_cast<std::size_t>(canvas.height));
    Caster caster(model);
    for (int y = 0; y < canvas.height; ++y) {
        caster.beginRow(canvas.originY - y + 0.5);
        for (int x = 0; x < canvas.width; ++x) {
            grid.at(x, y) = caster.pixel(x - canvas.originX - 0.5);
        }
    }
    for (int pass = 0; pass < 2; ++pass) closePinholesAndDropSpecks(grid);
    smoothWarts(grid);
    joinLonelyMaterials(grid);
    for (int pass = 0; pass < 2; ++pass) ToneSmoother(grid).run();
    return grid;
}

}  // namespace quibbits::atelier
