#include "rules/Growth.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quibbits {

namespace {

struct StageRow {
    Stage stage;
    std::string_view raw;
    GrowthRate rate;
};

constexpr std::array stageRows{
    StageRow{Stage::egg, "egg", GrowthRate::mediumFast},
    StageRow{Stage::mizzle, "mizzle", GrowthRate::mediumFast},
    StageRow{Stage::sparrel, "sparrel", GrowthRate::mediumFast},
    StageRow{Stage::thrummet, "thrummet", GrowthRate::mediumFast},
    StageRow{Stage::wispul, "wispul", GrowthRate::mediumSlow},
    StageRow{Stage::gloamer, "gloamer", GrowthRate::mediumSlow},
    StageRow{Stage::umbrool, "umbrool", GrowthRate::mediumSlow},
};
static_assert(stageRows.size() == stageCount);

constexpr std::array electricLine{Stage::egg, Stage::mizzle, Stage::sparrel, Stage::thrummet};
constexpr std::array ghostLine{Stage::egg, Stage::wispul, Stage::gloamer, Stage::umbrool};

const StageRow& row(Stage stage) {
    return stageRows[static_cast<std::size_t>(stage)];
}

double erratic(double n) {
    const double cube = n * n * n;
    if (n < 50) return cube * (100 - n) / 50;
    if (n < 68) return cube * (150 - n) / 100;
    if (n < 98) return cube * std::floor((1911 - 10 * n) / 3) / 500;
    return cube * (160 - n) / 100;
}

double fluctuating(double n) {
    const double cube = n * n * n;
    if (n < 15) return cube * (std::floor((n + 1) / 3) + 24) / 50;
    if (n < 36) return cube * (n + 14) / 50;
    return cube * (std::floor(n / 2) + 32) / 50;
}

}  // namespace

std::string_view rawValue(Stage stage) {
    return row(stage).raw;
}

std::optional<Stage> stageNamed(std::string_view raw) {
    const auto found = std::ranges::find(stageRows, raw, &StageRow::raw);
    if (found == stageRows.end()) return std::nullopt;
    return found->stage;
}

std::string displayName(Stage stage) {
    std::string name(rawValue(stage));
    name.front() = static_cast<char>(name.front() - 'a' + 'A');
    return name;
}

std::span<const Stage> line(Stage stage) {
    const bool ghost =
        stage != Stage::egg && std::ranges::find(ghostLine, stage) != ghostLine.end();
    return ghost ? std::span<const Stage>(ghostLine) : std::span<const Stage>(electricLine);
}

GrowthRate growthRate(Stage stage) {
    return row(stage).rate;
}

double expForLevel(GrowthRate rate, int level) {
    if (level <= 1) return 0;
    const double n = level;
    const double cube = n * n * n;
    switch (rate) {
        case GrowthRate::erratic: return std::floor(erratic(n));
        case GrowthRate::fast: return std::floor(4 * cube / 5);
        case GrowthRate::mediumFast: return cube;
        case GrowthRate::mediumSlow: return std::floor(6 * cube / 5 - 15 * n * n + 100 * n - 140);
        case GrowthRate::slow: return std::floor(5 * cube / 4);
        case GrowthRate::fluctuating: return std::floor(fluctuating(n));
    }
    return 0;
}

int levelFor(GrowthRate rate, double exp) {
    for (int next = 2; next <= maxLevel; ++next) {
        if (expForLevel(rate, next) > exp) return next - 1;
    }
    return maxLevel;
}

MoveNames Growth::known(Stage stage, int level, bool coralis) {
    MoveNames names;
    if (stage == Stage::egg) return names;
    const auto stages = line(stage);
    const auto own = std::ranges::find(stages, stage);
    for (const Move& move : moves()) {
        const auto learnt = std::ranges::find(stages, move.stage);
        if (learnt == stages.end() || learnt > own || move.level > level) continue;
        if (move.coralis && !coralis) continue;
        if (move.stage == Stage::thrummet && !move.coralis && coralis) continue;
        names.insert(move.name);
    }
    return names;
}

MoveNames UmbroolLine::known(Stage stage, int level) {
    MoveNames names;
    const auto learn = [&](Stage from, int upTo) {
        for (const Move& move : moves()) {
            if (move.stage == from && move.level <= upTo) names.insert(move.name);
        }
    };
    // A wispul becomes a gloamer at level 25; from then on its first list is closed.
    constexpr int lastWispulLevel = 24;
    switch (stage) {
        case Stage::wispul: learn(Stage::wispul, level); break;
        case Stage::umbrool: learn(Stage::umbrool, level); [[fallthrough]];
        case Stage::gloamer:
            learn(Stage::gloamer, level);
            learn(Stage::wispul, std::min(level, lastWispulLevel));
            break;
        default: break;
    }
    return names;
}

}  // namespace quibbits
