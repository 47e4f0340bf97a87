// What a frame costs: finding out what to paint and when to wake, and painting it.

#include <benchmark/benchmark.h>

#include "layers/LayerEngine.h"
#include "layers/LayerTree.h"
#include "raster/Painter.h"

namespace quibbits {
namespace {

/// A clock that stands; nothing that is scheduled ever runs.
class StandingLoop : public RunLoop {
public:
    Instant now() const override { return 100; }
    Date date() const override { return {}; }
    LocalTime localTime(Date) const override { return {}; }
    void post(Job) override {}

protected:
    std::uint64_t schedule(Schedule, Job) override { return 0; }
    void cancel(std::uint64_t) override {}
};

Picture sprite(int size) {
    std::vector<Argb> pixels;
    for (int i = 0; i < size * size * 2; ++i) {
        const bool inside = (i / 7 + i / (size * 2)) % 4 != 0;
        pixels.push_back(inside ? 0xff336699 : 0);
    }
    return {Image::fromArgb(size * 2, size, std::move(pixels)), Filter::nearest};
}

Animation runningFrames() {
    return {.keyPath = KeyPath::contentsRect,
            .motion = KeyframeMotion{.values = {Rect{0, 0, 0.5, 1}, Rect{0.5, 0, 0.5, 1}},
                                     .calculation = Calculation::discrete},
            .timing = {.duration = 0.3, .repeatCount = forever}};
}

Animation roaming(Point from) {
    return {.keyPath = KeyPath::position,
            .motion = BasicMotion{.from = from, .to = Point{from.x + 300, from.y}},
            .timing = {.duration = 2, .repeatCount = forever, .autoreverses = true}};
}

struct Crowd {
    StandingLoop loop;
    LayerEngine engine{loop};
    LayerTree tree{engine};
    std::vector<std::uint32_t> pixels;

    Crowd(int layers, int moving, int size) {
        const Transaction still(engine, Transaction::withoutActions());
        tree.setSurface({1920, 1080}, 1);
        const Content content = sprite(50);
        for (int i = 0; i < layers; ++i) {
            const Point place{i * 131 % 1500 + 100.0, i * 71 % 900 + 90.0};
            auto layer = engine.makeLayer({.bounds = {0, 0, size * 1.0, size * 1.0},
                                           .position = place,
                                           .content = content,
                                           .contentsRect = {0, 0, 0.5, 1}});
            tree.root().addSublayer(layer);
            if (i >= moving) continue;
            layer->add(runningFrames(), "frames");
            layer->add(roaming(place), "roam");
        }
        tree.nextFrame(loop.now());
        pixels.resize(1920 * 1080);
    }
};

/// Damage and wake for a tree of layers of which some move and flicker.
void tick(benchmark::State& state) {
    Crowd crowd(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)), 50);
    Instant now = crowd.loop.now();
    for (auto _ : state) {
        now += 1.0 / 60;
        benchmark::DoNotOptimize(crowd.tree.nextFrame(now));
        benchmark::DoNotOptimize(crowd.tree.nextWake(now));
    }
}
BENCHMARK(tick)->Args({1000, 0})->Args({1000, 100})->Args({20, 2})->Unit(benchmark::kMicrosecond);

/// One sprite of 50 × 50 pixels, painted at a size in device pixels.
void paintSprite(benchmark::State& state) {
    Crowd crowd(1, 0, static_cast<int>(state.range(0)));
    Painter painter;
    const int size = static_cast<int>(state.range(0));
    const PixelRect dirty{100 - size / 2, 990 - size / 2, size, size};
    for (auto _ : state) {
        painter.paint(crowd.tree, dirty, {crowd.pixels.data(), 1920, {0, 0, 1920, 1080}});
        benchmark::ClobberMemory();
    }
}
BENCHMARK(paintSprite)->Arg(50)->Arg(150)->Arg(187)->Unit(benchmark::kMicrosecond);

/// A panel with round corners and a soft shadow that grows from frame to frame.
void paintGrowingFlash(benchmark::State& state) {
    Crowd crowd(0, 0, 50);
    auto flash = crowd.engine.makeLayer({.bounds = {0, 0, 72, 72},
                                         .position = {500, 500},
                                         .background = Color::white(0.9),
                                         .cornerRadius = 36,
                                         .shadow = {.radius = 10, .opacity = 1}});
    crowd.tree.root().addSublayer(flash);
    flash->add({.keyPath = KeyPath::transformScale,
                .motion = BasicMotion{.from = 0.2, .to = 1.6},
                .timing = {.duration = 0.35, .repeatCount = forever}},
               "grow");
    Painter painter;
    Instant now = crowd.loop.now();
    for (auto _ : state) {
        now += 1.0 / 60;
        for (const auto& dirty : crowd.tree.nextFrame(now)) {
            painter.paint(crowd.tree, dirty, {crowd.pixels.data(), 1920, {0, 0, 1920, 1080}});
        }
    }
}
BENCHMARK(paintGrowingFlash)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace quibbits

BENCHMARK_MAIN();
