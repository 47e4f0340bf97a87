// What deciding, finding ways and living cost, without a display.

#include <benchmark/benchmark.h>

#include "desktop/files/DiskResources.h"
#include "simulator/Player.h"
#include "support/FlatText.h"

namespace quibbits {
namespace {

Mind wideAwakeGhost() {
    Mind mind{.energy = 0.6, .hunger = 0.7, .friendship = 0.6, .boredom = 0.5, .neglect = 0.4};
    mind.hungerOn = mind.caring = mind.canPlay = mind.ghost = mind.ghostHour = true;
    mind.shadowTricks = mind.canPrank = mind.canLick = mind.daytime = true;
    return mind;
}

void scoreAndDecide(benchmark::State& state) {
    const Mind mind = wideAwakeGhost();
    Brain brain;
    Random random(1);
    Brain::When now{Date{1000}, 1000};
    for (auto _ : state) {
        now.instant += 7;
        benchmark::DoNotOptimize(brain.decide(mind, now, random));
    }
}
BENCHMARK(scoreAndDecide);

/// A floor and a desktop full of icons in columns, all within a jump of their neighbours.
std::vector<Ground> desktop(std::size_t rows) {
    std::vector<Ground> ground{{{0, 3840}, 0, true}};
    for (std::size_t i = 0; ground.size() < rows; ++i) {
        const double x = 40 + 90.0 * static_cast<double>(i % 40);
        const double y = 80 + 80.0 * static_cast<double>(i / 40);
        ground.push_back({{x, x + 54}, y, false});
    }
    return ground;
}

void findRoute(benchmark::State& state) {
    const auto ground = desktop(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(route(ground, 0, ground.size() - 1, {.scale = 3}));
    }
}
BENCHMARK(findRoute)->Arg(40)->Arg(1000)->Unit(benchmark::kMicrosecond);

Scenario creatureAtHome(const std::string& more) {
    const std::string text =
        R"({"at":0,"event":"defaults","set":{"pet.stage":"sparrel","overApps":false}})"
        "\n"
        R"({"at":0,"event":"battery","level":60,"charging":false})"
        "\n" +
        more;
    return std::get<Scenario>(parseScenario(text));
}

void thinkOverManyIcons(benchmark::State& state) {
    DiskResources resources({QUIBBITS_SHEETS_DIR});
    FlatText text;
    const Scenario scenario =
        creatureAtHome(R"({"at":0,"event":"screen","width":3840,"height":2160})");
    Player player(scenario, {}, resources, text);
    std::vector<DesktopIcon> icons;
    for (const Ground& g : desktop(static_cast<std::size_t>(state.range(0)))) {
        if (!g.solid) icons.push_back({"file", {g.span.lo - 5, g.y - 50, 64, 64}});
    }
    player.computer().fileBrowser.icons = icons;
    player.play();
    Companion& creature = *player.app()->party()[0];
    player.computer().runLoop.advance(30);
    for (auto _ : state) {
        creature.stop([] {});
        creature.think();
    }
}
BENCHMARK(thinkOverManyIcons)->Arg(1000)->Unit(benchmark::kMillisecond);

void anHourOfLife(benchmark::State& state) {
    DiskResources resources({QUIBBITS_SHEETS_DIR});
    FlatText text;
    const Scenario scenario = creatureAtHome("");
    Player player(scenario, {}, resources, text);
    player.play();
    for (auto _ : state) player.computer().runLoop.advance(3600);
}
BENCHMARK(anHourOfLife)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quibbits

BENCHMARK_MAIN();
