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
        limits.serious = *limits.fair + (*limits.critical - *limits.fair) / 2;
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
        if (hasLimit(limits)) all.push_back({.input = zone / "temp", .limits = limits});
    }
}

void addChips(const fs::path& sys, std::vector<Thermometer>& all) {
    constexpr std::string_view ending = "_input";
    for (const auto& chip : sysEntries(sys / "class/hwmon")) {
        if (sysLine(chip / "name") == "drivetemp") continue;  // asking keeps a disk from sleeping
        for (const auto& file : sysEntries(chip)) {
            const std::string name = file.filename();
            if (!name.starts_with("temp") || !name.ends_with(ending)) continue;
            const std::string sensor = name.substr(0, name.size() - ending.size());
            const auto limits = completed({.fair = limit(chip / (sensor + "_max")),
                                           .critical = limit(chip / (sensor + "_crit"))});
            if (!hasLimit(limits)) continue;
            all.push_back(
                {.input = file, .limits = limits, .power = chip / "device/power/runtime_status"});
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

void Thermometers::findAll() {
    thermometers_ = thermometersIn(sys_);
    readingsLeft_ = readingsOfOneSearch;
}

void Thermometers::read() {
    const auto now = hottest();
    timer_ = loop_.timer(
        thermometers_.empty() ? withoutAny : betweenReadings, [this] { read(); }, readingTolerance);
    if (std::exchange(state_, now).value_or(ThermalState::nominal) != now && onChange) onChange();
}

ThermalState Thermometers::hottest() {
    if (readingsLeft_-- <= 0) findAll();
    if (thermometers_.empty()) readingsLeft_ = 0;
    auto hottest = ThermalState::nominal;
    for (auto& thermometer : thermometers_) {
        if (!thermometer.power.empty() && sysLine(thermometer.power) == "suspended") continue;
        const Instant before = loop_.now();
        const auto temperature = sysNumber(thermometer.input);
        if (temperature) hottest = std::max(hottest, stateAt(*temperature, thermometer.limits));
        if (loop_.now() - before > slowReading)
            thermometer.input.clear();  // not before the next search
    }
    std::erase_if(thermometers_, [](const auto& each) { return each.input.empty(); });
    return hottest;
}

}  // namespace quibbits::session
