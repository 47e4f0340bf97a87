#include "desktop/session/SysMachine.h"

#include <algorithm>
#include <charconv>
#include <fstream>

namespace quibbits {
namespace {

namespace fs = std::filesystem;

std::optional<std::string> line(const fs::path& file) {
    std::ifstream in(file);
    std::string text;
    if (!std::getline(in, text)) return std::nullopt;
    return text;
}

std::optional<int> number(const fs::path& file) {
    const auto text = line(file);
    int value = 0;
    if (!text ||
        std::from_chars(text->data(), text->data() + text->size(), value).ec != std::errc{}) {
        return std::nullopt;
    }
    return value;
}

}  // namespace

SysMachine::SysMachine(fs::path root) : root_(std::move(root)) {}

std::vector<PowerSource> SysMachine::powerSources() const {
    std::vector<fs::path> supplies;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(root_ / "class/power_supply", error)) {
        supplies.push_back(entry.path());
    }
    std::ranges::sort(supplies);

    const bool charging = std::ranges::any_of(supplies, [](const auto& supply) {
        return line(supply / "type") != "Battery" && number(supply / "online").value_or(0) > 0;
    });
    std::vector<PowerSource> sources;
    for (const auto& supply : supplies) {
        // A mouse or a headset has a battery of its own, with the scope "Device".
        if (line(supply / "type") != "Battery" || line(supply / "scope") == "Device" ||
            number(supply / "present") == 0) {
            continue;
        }
        PowerSource source{.currentCapacity = number(supply / "capacity"), .maxCapacity = 100};
        if (const auto status = line(supply / "status"); status && status != "Unknown") {
            source.state = status == "Discharging" ? "Battery Power" : "AC Power";
        } else if (charging) {
            source.state = "AC Power";
        }
        sources.push_back(std::move(source));
    }
    return sources;
}

}  // namespace quibbits
