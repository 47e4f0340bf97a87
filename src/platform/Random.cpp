#include "platform/Random.h"

#include <bit>

namespace quibbits {

Random::Random(std::uint64_t seed) {
    for (auto& word : state_) {  // splitmix64 spreads a small seed over the whole state
        seed += 0x9e3779b97f4a7c15u;
        std::uint64_t z = seed;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
        word = z ^ (z >> 31);
    }
}

std::uint64_t Random::bits() {
    const std::uint64_t result = std::rotl(state_[1] * 5, 7) * 9;
    const std::uint64_t t = state_[1] << 17;
    state_[2] ^= state_[0];
    state_[3] ^= state_[1];
    state_[1] ^= state_[2];
    state_[0] ^= state_[3];
    state_[2] ^= t;
    state_[3] = std::rotl(state_[3], 45);
    return result;
}

double Random::uniform(double a, double b) {
    constexpr double most = static_cast<double>((std::uint64_t{1} << 53) - 1);
    return a + (b - a) * (static_cast<double>(bits() >> 11) / most);
}

double Random::below(double limit) {
    return limit * (static_cast<double>(bits() >> 11) * 0x1.0p-53);
}

std::size_t Random::index(std::size_t count) {
    const std::uint64_t n = count;
    const std::uint64_t reject = -n % n;  // the draws below this would favour the first items
    std::uint64_t draw = bits();
    while (draw < reject) draw = bits();
    return static_cast<std::size_t>(draw % n);
}

}  // namespace quibbits
