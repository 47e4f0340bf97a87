#include "atelier/Effects.h"

#include <array>
#include <cmath>

namespace quibbits::atelier {
namespace {

constexpr int glimmerCount = 6;

/// Where bolts strike, in degrees about the middle: three rounds, none of them near the ground.
constexpr int boltCount = 4;
constexpr std::array<std::array<double, boltCount>, 3> boltRounds{
    {{-8, 52, 112, 176}, {18, 78, 142, 198}, {-20, 34, 94, 158}}};

std::array<Stamp, 5> glimmers() {
    return {Stamp{{"..e..", ".eEe.", "eEEEe", ".eEe.", "..e.."}}, Stamp{{".e.", "eEe", ".e."}},
            Stamp{{"e"}}, Stamp{{".e.", "eEe", ".e."}}, Stamp{{"E"}}};
}

int rounded(double value) {
    return static_cast<int>(std::floor(value + 0.5));
}

/// Glimmers that are drawn in by a ghost.
void addGlimmers(Model& model, const Form& form, const Frame& foot, int step) {
    const auto stamps = glimmers();
    for (int i = 0; i < glimmerCount; ++i) {
        const double angle = radians(i * 60 + step * 37);
        const double radius = form.reach * (1.25 - 0.13 * ((step + i * 2) % 6));
        model.mote({.x = rounded(foot.origin.x + radius * std::cos(angle) - 2),
                    .y = rounded(foot.origin.y + form.middle + radius * 0.85 * std::sin(angle) + 2),
                    .stamp = stamps[static_cast<std::size_t>((i * 3 + step * 2) % 5)],
                    .behind = true});
    }
}

/// Bolts that leave a furry creature: each is whole in one frame and a spark farther out in the
/// next. They have a rim, so that they are seen on light and on dark grounds alike.
void addBolts(Model& model, const Form& form, const Frame& foot, int step) {
    const Stamp whole{{"....FF.", "...FeeF", "..FeEF.", ".FeEFF.", "FeEEEeF", ".FFEeF.", ".FEeF..",
                       "FeFF...", ".F....."}};
    const Stamp spark{{"..F..", ".FeF.", "FeEeF", ".FeF.", "..F.."}};
    const auto& round = boltRounds[static_cast<std::size_t>(step / 2) % boltRounds.size()];
    const bool fading = step % 2 != 0;
    const double radius = form.reach * (fading ? 1.5 : 1.3);
    for (const double degree : round) {
        const double angle = radians(degree);
        const Stamp& bolt = fading ? spark : whole;
        const double x = foot.origin.x + radius * std::cos(angle);
        const double y = foot.origin.y + form.middle + radius * std::sin(angle);
        model.mote({.x = rounded(x - bolt.width() / 2.0),
                    .y = rounded(y + bolt.height() / 2.0),
                    .stamp = std::cos(angle) < 0 ? mirrored(bolt) : bolt,
                    .behind = true});
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
        case Effect::sparks:
            return (form.build & ghosts) != 0 ? addGlimmers(model, form, foot, pose.effectStep)
                                              : addBolts(model, form, foot, pose.effectStep);
        case Effect::impact: return addImpact(model, form, foot, pose);
    }
}

}  // namespace quibbits::atelier
