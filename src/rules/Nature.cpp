#include "rules/Nature.h"

#include <algorithm>
#include <array>
#include <vector>

namespace quibbits {

namespace {

using enum Nature::Stat;
constexpr auto no = std::nullopt;

constexpr std::array natures{
    Nature{"Hardy", no, no},
    Nature{"Lonely", attack, defense},
    Nature{"Brave", attack, speed},
    Nature{"Adamant", attack, spAttack},
    Nature{"Naughty", attack, spDefense},
    Nature{"Bold", defense, attack},
    Nature{"Docile", no, no},
    Nature{"Relaxed", defense, speed},
    Nature{"Impish", defense, spAttack},
    Nature{"Lax", defense, spDefense},
    Nature{"Timid", speed, attack},
    Nature{"Hasty", speed, defense},
    Nature{"Serious", no, no},
    Nature{"Jolly", speed, spAttack},
    Nature{"Naive", speed, spDefense},
    Nature{"Modest", spAttack, attack},
    Nature{"Mild", spAttack, defense},
    Nature{"Quiet", spAttack, speed},
    Nature{"Bashful", no, no},
    Nature{"Rash", spAttack, spDefense},
    Nature{"Calm", spDefense, attack},
    Nature{"Gentle", spDefense, defense},
    Nature{"Sassy", spDefense, speed},
    Nature{"Careful", spDefense, spAttack},
    Nature{"Quirky", no, no},
};
static_assert(natures.size() == 25);

constexpr std::array<std::string_view, 5> statNames{"Attack", "Defense", "Sp. Atk", "Sp. Def",
                                                    "Speed"};

}  // namespace

std::span<const Nature> Nature::all() {
    return natures;
}

std::optional<Nature> Nature::named(std::string_view name) {
    const auto found = std::ranges::find(natures, name, &Nature::name);
    if (found == natures.end()) return std::nullopt;
    return *found;
}

Nature Nature::neutral() {
    return natures.front();
}

std::string_view Nature::rawValue(Stat stat) {
    return statNames[static_cast<std::size_t>(stat)];
}

double Nature::walkSpeed() const {
    if (up == speed) return 1.25;
    if (down == speed) return 0.8;
    return 1.0;
}

int Nature::playfulness() const {
    if (up == attack || up == speed) return 5;
    if (up == defense || up == spDefense) return 2;
    return 3;
}

bool Nature::isShy() const {
    return name == "Timid" || name == "Bashful";
}
bool Nature::isSleepy() const {
    return down == speed || name == "Lax";
}

std::string Nature::effect() const {
    std::vector<std::string_view> phrases;
    if (up == speed)
        phrases.push_back("walks faster");
    else if (down == speed)
        phrases.push_back("walks slower");
    if (playfulness() >= 4)
        phrases.push_back("plays more");
    else if (playfulness() < 3)
        phrases.push_back("plays less");
    if (isSleepy()) phrases.push_back("naps more");
    if (isShy()) phrases.push_back("shy with your cursor until friendship is high");
    if (phrases.empty()) return "No particular quirks.";

    std::string sentence;
    for (const auto phrase : phrases) {
        if (!sentence.empty()) sentence += ", ";
        sentence += phrase;
    }
    sentence.front() = static_cast<char>(sentence.front() - 'a' + 'A');
    return sentence + ".";
}

}  // namespace quibbits
