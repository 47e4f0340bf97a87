#include "aware/Power.h"

#include <cctype>
#include <charconv>
#include <sstream>

namespace quibbits {

namespace {

constexpr Seconds usualStep = 12;

std::vector<std::string> words(const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> pieces;
    for (std::string piece; std::getline(in, piece, ' ');) {
        if (!piece.empty()) pieces.push_back(piece);
    }
    return pieces;
}

/// The number that a piece's digits form; 100 when they form none.
int digitsOf(const std::string& piece) {
    std::string digits;
    for (const char c : piece) {
        if (std::isdigit(static_cast<unsigned char>(c))) digits += c;
    }
    int value = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    return error == std::errc{} && !digits.empty() ? value : 100;
}

}  // namespace

Power::Power(Machine& machine, RunLoop& loop, const UserDefaults& defaults)
    : machine_(machine), loop_(loop) {
    changes_ = machine_.powerChanged.subscribe([this] { refresh(); });
    reading_ = read();
    if (const auto script = defaults.string("QuibPowerScript")) {
        const Seconds step = defaults.real("QuibPowerStep");
        play(words(*script), step > 0 ? step : usualStep, 0);
    }
}

void Power::refresh() {
    const Reading now = read();
    if (now == reading_) return;
    reading_ = now;
    if (onChange) onChange();
}

Power::Reading Power::read() const {
    if (fake_) return *fake_;
    for (const PowerSource& source : machine_.powerSources()) {
        if (!source.currentCapacity || source.maxCapacity.value_or(0) <= 0) continue;
        const auto percent = std::int64_t{100} * *source.currentCapacity / *source.maxCapacity;
        return {static_cast<int>(percent), source.state == "AC Power"};
    }
    return {100, true};
}

void Power::play(std::vector<std::string> pieces, Seconds step, std::size_t index) {
    if (pieces.empty()) return;
    const std::string& piece = pieces[index % pieces.size()];
    fake_ = {digitsOf(piece), piece.back() == 'c'};
    refresh();
    loop_.after(step, lifetime_.guard([this, pieces = std::move(pieces), step, index]() mutable {
        play(std::move(pieces), step, index + 1);
    }));
}

}  // namespace quibbits
