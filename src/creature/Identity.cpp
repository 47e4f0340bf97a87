#include "creature/Identity.h"

#include <algorithm>
#include <cmath>

#include "rules/Thresholds.h"

namespace quibbits {

namespace {

std::string drawGender(Random& random) {
    return random.below(1) < 0.5 ? "♀" : "♂";
}

}  // namespace

Identity Identity::hatched(Stage stage, Random& random, bool alwaysShiny) {
    Identity fresh{.stage = stage};
    fresh.gender = drawGender(random);
    fresh.nature = random.pick(Nature::all());
    fresh.shiny = std::floor(random.below(shinyOdds)) == 0 || alwaysShiny;
    return fresh;
}

Identity Identity::load(const UserDefaults& saved, const std::string& store, Random& random) {
    Identity told;
    told.stage = stageNamed(saved.string(store + ".stage").value_or("")).value_or(Stage::egg);
    told.form = saved.onlyString(store + ".form");
    told.shiny = saved.boolean(store + ".shiny");
    const auto nature = Nature::named(saved.string(store + ".nature").value_or(""));
    told.nature = nature ? *nature : random.pick(Nature::all());
    told.shimmerpoxUntil = saved.onlyDate(store + ".shimmerpox");
    const auto gender = saved.onlyString(store + ".gender");
    told.gender = gender ? *gender : drawGender(random);
    told.exp = std::clamp(saved.onlyNumber(store + ".exp").value_or(0), 0.0,
                          expForLevel(growthRate(told.stage), maxLevel));
    return told;
}

void Identity::save(UserDefaults& saved, const std::string& store) const {
    saved.set(store + ".exp", exp);
    saved.set(store + ".stage", std::string(rawValue(stage)));
    saved.set(store + ".gender", gender);
    saved.set(store + ".nature", std::string(nature.name));
    saved.set(store + ".shiny", shiny);
    if (form)
        saved.set(store + ".form", *form);
    else
        saved.remove(store + ".form");
    if (shimmerpoxUntil)
        saved.set(store + ".shimmerpox", *shimmerpoxUntil);
    else
        saved.remove(store + ".shimmerpox");
}

}  // namespace quibbits
