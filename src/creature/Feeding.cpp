// Asking for something to eat.

#include "body/Pixels.h"
#include "creature/Companion.h"

namespace quibbits {

void Companion::askForBerry(std::optional<Point> target, Done done) {
    if (!hungerNotified_) {
        hungerNotified_ = true;
        notify({.title = name() + " is hungry",
                .body = "Drag a berry onto it from the menu bar dial.",
                .suffix = "hungry"});
    }
    std::vector<Step> steps;
    if (target) steps.push_back(going({.to = *target, .speed = 70}));
    steps.push_back(doing([this] {
        pet_.faceTowards(cursor());
        speak({.moment = Moment::askBerry,
               .face = Face::worried,
               .thought = Pixels::item(Item::azurine),
               .silent = 3.5,
               .spoken = 3.5,
               .otherwise = name() + " is hungry!"});
    }));
    steps.push_back(playing(a().hop, 2));
    steps.push_back(sitting(between(5, 8)));
    run(std::move(steps), std::move(done));
}

}  // namespace quibbits
