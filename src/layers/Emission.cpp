#include "layers/Emission.h"

#include <algorithm>
#include <cmath>

#include "platform/Random.h"

namespace quibbits {

namespace {

/// More than this many of one cell at once are not shown; the youngest are left out.
constexpr int mostParticles = 2000;

Random randomOf(std::uint64_t seed, std::size_t cell, double number) {
    constexpr std::uint64_t spread = 0x9e3779b97f4a7c15u;
    const std::uint64_t n = static_cast<std::uint64_t>(number);
    return Random((seed * spread + cell + 1) * spread + n);
}

double around(Random& random, double value, double range) {
    return value + range * random.uniform(-1, 1);
}

}  // namespace

void Emission::record(std::unique_ptr<Emission>& emission, const Emitter* emitter, Instant now) {
    if (!emitter) {
        emission = nullptr;
        return;
    }
    if (!emission) emission = std::make_unique<Emission>();
    emission->cells_.resize(emitter->cells.size());
    for (std::size_t i = 0; i < emitter->cells.size(); ++i) {
        const auto& cell = emitter->cells[i];
        const double rate = std::max(0.0, cell.birthRate * emitter->birthRate);
        change(emission->cells_[i], rate, now, longestLife(cell));
    }
}

/// Spans whose last particle is dead are forgotten; only their count of births goes on.
void Emission::change(Spans& spans, double rate, Instant now, Seconds longestLife) {
    if (spans.empty() ? rate == 0 : spans.back().rate == rate) return;
    spans.push_back({now, birthsBy(spans, now), rate});
    while (spans.size() > 1 && spans[1].from < now - longestLife) spans.erase(spans.begin());
}

double Emission::longestLife(const EmitterCell& cell) {
    return std::max(0.0, cell.lifetime + std::abs(cell.lifetimeRange));
}

double Emission::birthsBy(const Spans& spans, Instant now) {
    if (spans.empty()) return 0;
    const auto& last = spans.back();
    return last.births + last.rate * std::max(0.0, now - last.from);
}

/// Calls visit(number, instant) for the births between two instants. Number n is born when the
/// count of births reaches n: the first one at once.
template <typename Visit>
void Emission::visitBirths(const Spans& spans, Instant after, Instant now, Visit visit) {
    for (std::size_t i = 0; i < spans.size(); ++i) {
        const auto& span = spans[i];
        if (span.rate <= 0 || span.from > now) continue;
        const bool open = i + 1 == spans.size() || spans[i + 1].from > now;
        const double since = std::max(0.0, after - span.from) * span.rate;
        const double first = std::ceil(span.births + since);
        double last = open ? std::floor(span.births + span.rate * (now - span.from))
                           : std::ceil(spans[i + 1].births) - 1;
        if (last - first > mostParticles) last = first + mostParticles;
        for (double n = first; n <= last; ++n) {
            visit(n, span.from + (n - span.births) / span.rate);
        }
    }
}

std::vector<Emission::Particle> Emission::particles(const Emitter& emitter, std::uint64_t seed,
                                                    Instant now) const {
    std::vector<Particle> all;
    for (std::size_t c = 0; c < std::min(cells_.size(), emitter.cells.size()); ++c) {
        const auto& cell = emitter.cells[c];
        visitBirths(cells_[c], now - longestLife(cell), now, [&](double number, Instant born) {
            Random random = randomOf(seed, c, number);
            const Seconds lifetime = around(random, cell.lifetime, cell.lifetimeRange);
            const double speed = around(random, cell.velocity, cell.velocityRange);
            const double angle = around(random, cell.emissionLongitude, cell.emissionRange / 2);
            const Point birthplace{random.uniform(-0.5, 0.5) * emitter.area.width,
                                   random.uniform(-0.5, 0.5) * emitter.area.height};
            const Seconds age = std::max(0.0, now - born);
            if (age >= lifetime) return;
            const Vector moved{(speed * std::cos(angle) + cell.acceleration.dx * age / 2) * age,
                               (speed * std::sin(angle) + cell.acceleration.dy * age / 2) * age};
            const double opacity = std::clamp(1 + cell.alphaSpeed * age, 0.0, 1.0);
            all.push_back({c, birthplace + moved, opacity});
        });
    }
    return all;
}

std::optional<Instant> Emission::nextChange(const Emitter& emitter, std::uint64_t seed,
                                            Instant now) const {
    if (!particles(emitter, seed, now).empty()) return now;
    std::optional<Instant> next;
    for (std::size_t c = 0; c < std::min(cells_.size(), emitter.cells.size()); ++c) {
        if (cells_[c].empty() || cells_[c].back().rate <= 0) continue;
        if (!(longestLife(emitter.cells[c]) > 0)) continue;
        const auto& span = cells_[c].back();
        const double number = std::floor(birthsBy(cells_[c], now)) + 1;
        const Instant birth = span.from + (number - span.births) / span.rate;
        next = next ? std::min(*next, birth) : birth;
    }
    return next;
}

Rect Emission::reach(const Emitter& emitter) {
    double far = 0;
    for (const auto& cell : emitter.cells) {
        const Seconds life = longestLife(cell);
        const double speed = std::abs(cell.velocity) + std::abs(cell.velocityRange);
        const double picture = std::hypot(cell.image.width(), cell.image.height()) * cell.scale;
        const double fall = cell.acceleration.length() * life / 2;
        far = std::max(far, (speed + fall) * life + picture / 2);
    }
    const double x = emitter.area.width / 2 + far;
    const double y = emitter.area.height / 2 + far;
    return {-x, -y, 2 * x, 2 * y};
}

}  // namespace quibbits
