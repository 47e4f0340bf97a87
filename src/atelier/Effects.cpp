#include "atelier/Effects.h"

#include <array>
#include <cmath>

namespace quibbits::atelier {
namespace {

constexpr int sparkCount = 6;

std::array<Stamp, 5> bolts() {
    return {Stamp{{"...E", "..Ee", ".EE.", "eE..", "E..."}},
            Stamp{{"E...", "eE..", ".EE.", "..Ee", "...E"}},
            Stamp{{"..E..", "..e..", "EeEeE", "..e..", "..E.."}}, Stamp{{"E.", "eE", ".E"}},
            Stamp{{".E", "Ee", "E."}}};
}

std::array<Stamp, 5> glimmers() {
    return {Stamp{{"..e..", ".eEe.", "eEEEe", ".eEe.", "..e.."}}, Stamp{{".e.", "eEe", ".e."}},
            Stamp{{"e"}}, Stamp{{".e.", "eEe", ".e."}}, Stamp{{"E"}}};
}

int rounded(double value) {
    return static_cast<int>(std::floor(value + 0.5));
}

/// Bolts that jump about on a ring around a furry creature; glimmers that are drawn in by a ghost.
void addSparks(Model& model, const Form& form, const Frame& foot, int step) {
    const bool ghost = (form.build & ghosts) != 0;
    const auto stamps = ghost ? glimmers() : bolts();
    for (int i = 0; i < sparkCount; ++i) {
        const double angle = radians(i * 60 + step * 37);
        const double radius = form.reach * (ghost ? 1.25 - 0.13 * ((step + i * 2) % 6)
                                                  : 0.95 + 0.12 * ((i * 7 + step * 3) % 4) / 3.0);
        model.mote({.x = rounded(foot.origin.x + radius * std::cos(angle) - 2),
                    .y = rounded(foot.origin.y + form.middle + radius * 0.85 * std::sin(angle) + 2),
                    .stamp = stamps[static_cast<std::size_t>((i * 3 + step * 2) % 5)],
                    .behind = ghost || i != 4});
    }
}

/// A star where the blow lands: full in the first frame, falling apart in the second.
void addImpact(Model& model, const Form& form, const Frame& foot, const Pose& pose) {
    const Stamp whole{
        {"...e...", ".e.e.e.", "..eEe..", "eeEWEee", "..eEe..", ".e.e.e.", "...e..."}};
    const Stamp fading{{".E...E.", "..e.e..", "...E...", "..e.e..", ".E...E."}};
    const Vec3 ahead = foot.axes.z;
    model.mote({.x = rounded(foot.origin.x + ahead.x * form.reach * 0.95 - 3),
                .y = rounded(foot.origin.y + form.middle - 2 + ahead.y * form.reach * 0.9 + 3),
                .stamp = pose.effectStep % 2 == 0 ? whole : fading});
}

}  // namespace

void addEffect(Model& model, const Form& form, const Frame& foot, const Pose& pose) {
    switch (pose.effect) {
        case Effect::none: return;
        case Effect::sparks: return addSparks(model, form, foot, pose.effectStep);
        case Effect::impact: return addImpact(model, form, foot, pose);
    }
}

}  // namespace quibbits::atelier
