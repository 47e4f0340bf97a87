#include "creature/Needs.h"

#include <algorithm>

namespace quibbits {

namespace {

constexpr double boredomPerMinute = 0.125;

}  // namespace

Needs Needs::load(const UserDefaults& saved, const std::string& store) {
    const auto number = [&](const char* suffix, double otherwise) {
        return saved.onlyNumber(store + suffix).value_or(otherwise);
    };
    const Values fresh;
    Needs needs;
    needs.values_ = {
        .energy = std::clamp(number(".energy", fresh.energy), 0.0, 1.0),
        .hunger = std::clamp(number(".hunger", fresh.hunger), 0.0, 1.0),
        .friendship = std::clamp(number(".friendship", fresh.friendship), 0.0, mostFriendship),
        .hungryMinutes = std::max(number(".hungryMinutes", 0), 0.0)};
    return needs;
}

void Needs::save(UserDefaults& saved, const std::string& store) const {
    saved.set(store + ".energy", values_.energy);
    saved.set(store + ".hunger", values_.hunger);
    saved.set(store + ".friendship", values_.friendship);
}

void Needs::rest(double energy) {
    values_.energy = std::min(values_.energy + energy, 1.0);
}
void Needs::bore(double by) {
    values_.boredom = std::min(values_.boredom + by, 1.0);
}
void Needs::amuse(double by) {
    values_.boredom = std::max(values_.boredom - by, 0.0);
}
void Needs::eat(double hunger) {
    values_.hunger = std::max(values_.hunger - hunger, 0.0);
}
void Needs::growHungry(double hunger) {
    values_.hunger = std::min(values_.hunger + hunger, 1.0);
}
void Needs::befriend(double by) {
    values_.friendship = std::clamp(values_.friendship + by, 0.0, mostFriendship);
}

void Needs::beginAnew() {
    const Values fresh;
    values_.energy = fresh.energy;
    values_.hunger = fresh.hunger;
    values_.friendship = fresh.friendship;
}

void Needs::pass(double minutes) {
    values_.energy = std::max(values_.energy - minutes / minutesToStarve, 0.0);
    if (minutes > 0) bore(minutes * boredomPerMinute);
}

}  // namespace quibbits
