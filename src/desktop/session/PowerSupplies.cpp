#include "desktop/session/PowerSupplies.h"

#include <linux/netlink.h>
#include <systemd/sd-bus.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "desktop/session/SysFolder.h"

namespace quibbits::session {
namespace {

namespace fs = std::filesystem;

constexpr const char* service = "org.freedesktop.UPower";
constexpr const char* servicePath = "/org/freedesktop/UPower";
constexpr const char* deviceInterface = "org.freedesktop.UPower.Device";
constexpr const char* onMains = "AC Power";
constexpr const char* onBattery = "Battery Power";
constexpr std::size_t mostDevices = 16;

/// UPower's numbers of kinds and states.
enum class Kind { battery = 2, uninterruptible = 3 };
enum class ChargeState { charging = 1, full = 4, waitingToCharge = 5 };

// One plug moves several supplies, and each tells; the files are read once for all of them.
constexpr Seconds settling = 0.3;
constexpr std::uint32_t kernelGroup = 1;

/// Whole percent, of which a battery that was measured anew may tell more than it can have.
std::optional<int> percent(double value) {
    constexpr double roundingError = 1e-6;
    if (!(value >= 0)) return std::nullopt;
    return static_cast<int>(std::min(value + roundingError, 100.0));
}

std::optional<int> percentOf(double now, double full) {
    if (!(now >= 0 && full > 0)) return std::nullopt;
    return percent(std::min(now / full, 1.0) * 100);
}

/// What a battery holds and can hold, in whatever its driver counts.
struct Charge {
    double now = 0;
    double full = 0;
    std::string measure;  // none for plain percents
};

std::optional<Charge> measuredCharge(const fs::path& supply) {
    for (const std::string measure : {"energy", "charge"}) {
        const auto now = sysNumber(supply / (measure + "_now"));
        const auto full = sysNumber(supply / (measure + "_full"));
        if (now && full && *now >= 0 && *full > 0) {
            return Charge{static_cast<double>(*now), static_cast<double>(*full), measure};
        }
    }
    return std::nullopt;
}

std::optional<int> chargeOf(const fs::path& supply) {
    if (const auto capacity = sysNumber(supply / "capacity")) return percent(*capacity);
    const auto charge = measuredCharge(supply);
    return charge ? percentOf(charge->now, charge->full) : std::nullopt;
}

/// The charge of several: by what they hold where all tell it in one measure, else as if they were
/// of one size.
std::optional<int> chargeOf(const std::vector<fs::path>& batteries) {
    if (batteries.size() == 1) return chargeOf(batteries.front());
    std::optional<Charge> sum;
    for (const auto& battery : batteries) {
        const auto charge = measuredCharge(battery);
        if (!charge || (sum && sum->measure != charge->measure)) {
            sum.reset();
            break;
        }
        if (!sum) sum = Charge{.measure = charge->measure};
        sum->now += std::min(charge->now, charge->full);
        sum->full += charge->full;
    }
    if (sum) return percentOf(sum->now, sum->full);
    double total = 0;
    int counted = 0;
    for (const auto& battery : batteries) {
        const auto charge = chargeOf(battery);
        if (!charge) continue;
        total += *charge;
        ++counted;
    }
    return counted > 0 ? percent(total / counted) : std::nullopt;
}

bool isOwnBattery(const fs::path& supply) {
    return sysLine(supply / "type") == "Battery" && sysLine(supply / "scope") != "Device" &&
           sysNumber(supply / "present") != 0;
}

bool isCharger(const fs::path& supply) {
    const auto type = sysLine(supply / "type");
    return type && (*type == "Mains" || type->starts_with("USB") || *type == "Wireless") &&
           sysLine(supply / "scope") != "Device";
}

bool isCharged(const fs::path& battery) {
    const auto status = sysLine(battery / "status");
    return status == "Charging" || status == "Full" || status == "Not charging";
}

bool isBattery(const BusDictionary& device) {
    const auto kind = valueOf<std::int64_t>(device, "Type");
    return (kind == static_cast<int>(Kind::battery) ||
            kind == static_cast<int>(Kind::uninterruptible)) &&
           valueOf<bool>(device, "IsPresent").value_or(true) &&
           valueOf<bool>(device, "PowerSupply").value_or(true);
}

std::optional<int> chargeOf(const BusDictionary& device) {
    if (const auto value = valueOf<double>(device, "Percentage")) {
        if (const auto whole = percent(*value)) return whole;
    }
    return percentOf(valueOf<double>(device, "Energy").value_or(-1),
                     valueOf<double>(device, "EnergyFull").value_or(0));
}

bool isPlugged(const BusDictionary& machine, const BusDictionary& device) {
    if (const auto draining = valueOf<bool>(machine, "OnBattery")) return !*draining;
    const auto state = valueOf<std::int64_t>(device, "State");
    return state == static_cast<int>(ChargeState::charging) ||
           state == static_cast<int>(ChargeState::full) ||
           state == static_cast<int>(ChargeState::waitingToCharge);
}

}  // namespace

std::vector<PowerSource> batteriesIn(const fs::path& sys) {
    const auto supplies = sysEntries(sys / "class/power_supply");
    std::optional<bool> plugged;
    for (const auto& supply : supplies) {
        if (!isCharger(supply)) continue;
        plugged = plugged.value_or(false) || sysNumber(supply / "online").value_or(0) > 0;
    }
    std::vector<fs::path> batteries;
    std::ranges::copy_if(supplies, std::back_inserter(batteries), isOwnBattery);
    if (batteries.empty()) return {};
    // Of several batteries one is emptied after the other; the first that drains tells.
    const bool isOnMains = plugged.value_or(std::ranges::all_of(batteries, isCharged));
    return {{.currentCapacity = chargeOf(batteries),
             .maxCapacity = 100,
             .state = isOnMains ? onMains : onBattery}};
}

PowerSupplies::PowerSupplies(EventRunLoop& loop, Bus& system, fs::path sys)
    : loop_(loop),
      bus_(system),
      sys_(std::move(sys)),
      sources_(batteriesIn(sys_)),
      upower_(
          system,
          {.service = service, .path = servicePath, .interface = service, .startsService = true}),
      display_(system, {.service = service,
                        .path = std::string(servicePath) + "/devices/DisplayDevice",
                        .interface = deviceInterface}) {
    upower_.onChange = display_.onChange = [this] { refresh(); };
}

std::optional<BusDictionary> PowerSupplies::battery() const {
    if (display_.state() == BusObject::State::present) {
        return isBattery(display_.properties()) ? display_.properties() : BusDictionary{};
    }
    for (const auto& device : devices_) {
        if (device->state() == BusObject::State::present && isBattery(device->properties())) {
            return device->properties();
        }
    }
    return std::nullopt;
}

void PowerSupplies::refresh() {
    using State = BusObject::State;
    if (upower_.state() == State::asking || display_.state() == State::asking) return;
    if (upower_.state() == State::absent) {
        devices_.clear();
        question_.reset();
        return readFiles();
    }
    kernel_.reset();
    settle_.cancel();
    if (display_.state() == State::present) {
        devices_.clear();
    } else if (devices_.empty()) {
        readDevices();
    }
    if (const auto device = battery()) {
        if (device->empty()) return take({});
        take({{.currentCapacity = chargeOf(*device),
               .maxCapacity = 100,
               .state = isPlugged(upower_.properties(), *device) ? onMains : onBattery}});
    }
}

void PowerSupplies::readFiles() {
    if (!kernel_) {
        kernel_.emplace(loop_, NETLINK_KOBJECT_UEVENT, kernelGroup,
                        [this](std::string_view packet) { heardKernel(packet); });
    }
    take(batteriesIn(sys_));
}

/// A packet is "action@path" and the rest as words with a zero after each.
void PowerSupplies::heardKernel(std::string_view packet) {
    if (!packet.empty() && packet.find("/power_supply/") == std::string_view::npos) return;
    settle_ = loop_.timer(
        settling, [this] { take(batteriesIn(sys_)); }, settling);
}

void PowerSupplies::readDevices() {
    question_ = bus_.call(
        {.destination = service,
         .path = servicePath,
         .interface = service,
         .member = "EnumerateDevices"},
        nullptr, [this](sd_bus_message* reply, const Bus::Failure&) {
            if (!reply) return;
            for (const auto& path : readTexts(reply)) {
                if (devices_.size() >= mostDevices) break;
                devices_.push_back(std::make_unique<BusObject>(
                    bus_, BusObject::Place{
                              .service = service, .path = path, .interface = deviceInterface}));
                devices_.back()->onChange = [this] { refresh(); };
            }
        });
}

void PowerSupplies::take(std::vector<PowerSource> sources) {
    if (sources == sources_) return;
    sources_ = std::move(sources);
    if (onChange) onChange();
}

}  // namespace quibbits::session
