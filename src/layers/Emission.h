#pragma once
// The particles of one emitter. Everything about a particle follows from its number and from the
// rates at which its cell has given birth, which are recorded as they change; so where all of them
// are at an instant is a pure function of the instant.

#include <memory>
#include <optional>
#include <vector>

#include "layers/Content.h"
#include "platform/RunLoop.h"

namespace quibbits {

class Emission {
public:
    struct Particle {
        std::size_t cell = 0;
        Point place;  // of its centre, in the layer's coordinates
        double opacity = 1;
    };

    /// Takes note of a layer's emitter as it is from now on, or of its having none.
    static void record(std::unique_ptr<Emission>& emission, const Emitter* emitter, Instant now);

    /// Those that live at the instant, the older first within a cell.
    std::vector<Particle> particles(const Emitter& emitter, std::uint64_t seed, Instant now) const;
    /// When the particles may next look different: now while some live, the next birth when none
    /// does, nothing when none ever will.
    std::optional<Instant> nextChange(const Emitter& emitter, std::uint64_t seed,
                                      Instant now) const;
    /// Around every place that a particle's picture can come to, in the layer's coordinates.
    static Rect reach(const Emitter& emitter);

private:
    struct Span {
        Instant from = 0;
        double births = 0;  // before it
        double rate = 0;    // births a second
    };
    using Spans = std::vector<Span>;

    static double birthsBy(const Spans& spans, Instant now);
    static void change(Spans& spans, double rate, Instant now, Seconds longestLife);
    static double longestLife(const EmitterCell& cell);
    template <typename Visit>
    static void visitBirths(const Spans& spans, Instant after, Instant now, Visit visit);

    std::vector<Spans> cells_;
};

}  // namespace quibbits
