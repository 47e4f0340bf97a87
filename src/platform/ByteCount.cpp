#include "platform/ByteCount.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace quibbits {

namespace {

constexpr double step = 1000;

struct Unit {
    const char* name;
    int decimals;
};
constexpr std::array units{Unit{"KB", 0}, Unit{"MB", 1}, Unit{"GB", 2},
                           Unit{"TB", 2}, Unit{"PB", 2}, Unit{"EB", 2}};

double rounded(double value, int decimals) {
    const double fine = std::pow(10, decimals);
    return std::round(value * fine) / fine;
}

std::string digits(double value, int decimals) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
    std::string text = buffer;
    if (decimals == 0) return text;
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text;
}

}  // namespace

std::string fileSizeText(std::uint64_t bytes) {
    if (bytes == 0) return "Zero KB";
    if (bytes == 1) return "1 byte";
    if (bytes < 1000) return std::to_string(bytes) + " bytes";
    double value = static_cast<double>(bytes) / step;
    std::size_t unit = 0;
    while (rounded(value, units[unit].decimals) >= step && unit + 1 < units.size()) {
        value /= step;
        ++unit;
    }
    return digits(rounded(value, units[unit].decimals), units[unit].decimals) + " " +
           units[unit].name;
}

}  // namespace quibbits
