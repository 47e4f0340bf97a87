#pragma once
// The one source of chance. Seeded, and the same on every machine: the standard distributions may
// differ between libraries, so the draws are made here from raw bits.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace quibbits {

class Random {
public:
    explicit Random(std::uint64_t seed);

    /// 64 fresh bits.
    std::uint64_t bits();
    /// Uniform in the closed range from a to b.
    double uniform(double a, double b);
    /// Uniform from 0 up to, not including, the limit, which is above 0.
    double below(double limit);
    /// A uniform whole number from 0 to count − 1; count is at least 1.
    std::size_t index(std::size_t count);
    /// A fair coin.
    bool coin() { return (bits() >> 63) != 0; }

    /// One of the items, each as likely; there is at least one.
    template <typename Container>
    const auto& pick(const Container& items) {
        return items[index(std::size(items))];
    }

private:
    std::array<std::uint64_t, 4> state_;  // xoshiro256**, by Blackman and Vigna
};

}  // namespace quibbits
