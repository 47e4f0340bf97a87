#include "desktop/session/Thermometers.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "desktop/session/SysFolder.h"

namespace quibbits::session {
namespace {

namespace fs = std::filesystem;

constexpr Seconds betweenReadings = 30;
constexpr Seconds readingTolerance = 10;
constexpr Seconds withoutAny = 600;  // a driver may come late
constexpr int readingsOfOneSearch = 20;
constexpr Seconds slowReading = 0.02;  // some controllers stop the machine to answer

// Firmware leaves limits at zero or far out where it knows none, and broken sensors say anything.
constexpr int lowestLimit = 30'000;
constexpr int highestLimit = 200'000;
constexpr int coldest = -60'000;

// Where only the end is known.
constexpr int fairBelowCritical = 20'000;
constexpr int seriousBelowCritical = 5'000;

constexpr int clearOfLimit = 5'000;  // a fall

std::optional<int> limit(const fs::path& file) {
    const auto value = sysNumber(file);
    return value && *value >= lowestLimit && *value <= highestLimit ? value : std::nullopt;
}

void keepLower(std::optional<int>& limit, std::optional<int> other) {
    if (other) limit = limit ? std::min(*limit, *other) : *other;
}

Thermometer::Limits completed(Thermometer::Limits limits) {
    // Chips that know no lower limit repeat the last one.
    if (limits.critical && limits.fair >= limits.critical) limits.fair.reset();
    if (limits.critical && !limits.fair) limits.fair = *limits.critical - fairBelowCritical;
    if (limits.critical && limits.fair && !limits.serious) {
        const int halfWay = *limits.fair + (*limits.critical - *limits.fair) / 2;
        limits.serious = std::max(halfWay, *limits.critical - seriousBelowCritical);
    }
    return limits;
}

bool hasLimit(const Thermometer::Limits& limits) {
    return limits.fair || limits.serious || limits.critical;
}

/// A zone's trip points lie beside it as trip_point_0_type, trip_point_0_temp and so on.
Thermometer::Limits tripPoints(const fs::path& zone) {
    Thermometer::Limits limits;
    for (int i = 0;; ++i) {
        const std::string trip = "trip_point_" + std::to_string(i);
        const auto type = sysLine(zone / (trip + "_type"));
        if (!type) return completed(limits);
        const auto at = limit(zone / (trip + "_temp"));
        if (*type == "passive") keepLower(limits.fair, at);
        if (*type == "hot") keepLower(limits.serious, at);
        if (*type == "critical") keepLower(limits.critical, at);
    }
}

void addZones(const fs::path& sys, std::vector<Thermometer>& all) {
    for (const auto& zone : sysEntries(sys / "class/thermal")) {
        if (!zone.filename().native().starts_with("thermal_zone")) continue;
        if (sysLine(zone / "mode") == "disabled") continue;
        const auto limits = tripPoints(zone);
        if (hasLimit(limits)) {
            all.push_back(
                {.input = zone / "temp", .limits = limits, .power = {}, .fault = {}, .alarm = {}});
        }
    }
}

/// Chips that watch a whole board through wires that lead anywhere or nowhere.
bool isOfBoard(const std::string& kind) {
    constexpr std::array makers{"nct", "it8", "w83", "f718", "f719", "sch5", "vt1211", "pc87"};
    return std::ranges::any_of(makers, [&](const char* maker) { return kind.starts_with(maker); });
}

void addChips(const fs::path& sys, std::vector<Thermometer>& all) {
    constexpr std::string_view ending = "_input";
    for (const auto& chip : sysEntries(sys / "class/hwmon")) {
        const std::string kind = sysLine(chip / "name").value_or("");
        if (kind == "drivetemp" || isOfBoard(kind)) continue;  // asking keeps a disk from sleeping
        for (const auto& file : sysEntries(chip)) {
            const std::string name = file.filename();
            if (!name.starts_with("temp") || !name.ends_with(ending)) continue;
            const std::string sensor = name.substr(0, name.size() - ending.size());
            const auto limits = completed({.fair = limit(chip / (sensor + "_max")),
                                           .critical = limit(chip / (sensor + "_crit"))});
            if (!hasLimit(limits)) continue;
            all.push_back({.input = file,
                           .limits = limits,
                           .power = chip / "device/power/runtime_status",
                           .fault = chip / (sensor + "_fault"),
                           .alarm = chip / (sensor + "_crit_alarm")});
        }
    }
}

}  // namespace

std::vector<Thermometer> thermometersIn(const fs::path& sys) {
    std::vector<Thermometer> all;
    addZones(sys, all);
    addChips(sys, all);
    return all;
}

ThermalState stateAt(int temperature, const Thermometer::Limits& limits) {
    if (temperature < coldest || temperature > highestLimit) return ThermalState::nominal;
    const auto reaches = [&](std::optional<int> limit) { return limit && temperature >= *limit; };
    if (reaches(limits.critical)) return ThermalState::critical;
    if (reaches(limits.serious)) return ThermalState::serious;
    if (reaches(limits.fair)) return ThermalState::fair;
    return ThermalState::nominal;
}

ThermalState Heat::take(const Reading& reading) {
    if (!first_) first_ = reading.temperature;
    moves_ = moves_ || reading.temperature != *first_;
    const auto confirmed = std::min(reading.state, last_);
    last_ = reading.state;
    if (!moves_) return held_;
    if (confirmed > held_) {
        held_ = confirmed;
    } else if (reading.state < held_) {
        held_ = std::min(held_, reading.stateIfWarmer);
    }
    return held_;
}

Thermometers::Thermometers(RunLoop& loop, fs::path sys) : loop_(loop), sys_(std::move(sys)) {}

ThermalState Thermometers::state() {
    if (!state_) state_ = hottest();
    return *state_;
}

void Thermometers::start() {
    if (!timer_) read();
}

void Thermometers::stop() {
    timer_.cancel();
}

/// Those that are known keep what they have read.
void Thermometers::findAll() {
    const auto before = std::exchange(watched_, {});
    for (auto& thermometer : thermometersIn(sys_)) {
        const auto known = std::ranges::find_if(before, [&](const Watched& each) {
            return each.thermometer.input == thermometer.input;
        });
        const Heat heat = known == before.end() ? Heat{} : known->heat;
        watched_.push_back({std::move(thermometer), heat});
    }
    readingsLeft_ = readingsOfOneSearch;
}

void Thermometers::read() {
    const auto now = hottest();
    timer_ = loop_.timer(
        watched_.empty() ? withoutAny : betweenReadings, [this] { read(); }, readingTolerance);
    if (std::exchange(state_, now).value_or(ThermalState::nominal) != now && onChange) onChange();
}

ThermalState Thermometers::hottest() {
    const Instant start = loop_.now();
    if (state_ && start - lastReading_ < betweenReadings / 2) return *state_;
    lastReading_ = start;
    if (readingsLeft_-- <= 0) findAll();
    if (watched_.empty()) readingsLeft_ = 0;
    auto hottest = ThermalState::nominal;
    for (auto& [thermometer, heat] : watched_) {
        const auto& [input, limits, power, fault, alarm] = thermometer;
        if (!power.empty() && sysLine(power) == "suspended") continue;
        if (!fault.empty() && sysNumber(fault).value_or(0) != 0) continue;
        const Instant before = loop_.now();
        if (const auto temperature = sysNumber(input)) {
            const bool mayBeCritical = alarm.empty() || sysNumber(alarm).value_or(0) != 0;
            const auto most = mayBeCritical ? ThermalState::critical : ThermalState::serious;
            hottest = std::max(
                hottest, heat.take({.temperature = *temperature,
                                    .state = std::min(most, stateAt(*temperature, limits)),
                                    .stateIfWarmer = std::min(
                                        most, stateAt(*temperature + clearOfLimit, limits))}));
        }
        // One that is so slow is not read before the next search.
        if (loop_.now() - before > slowReading) thermometer.input.clear();
    }
    std::erase_if(watched_, [](const auto& each) { return each.thermometer.input.empty(); });
    return hottest;
}

}  // namespace quibbits::session
