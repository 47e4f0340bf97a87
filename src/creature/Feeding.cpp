// Berries: asking for one, seeing one come, eating it with or without pleasure.

#include <algorithm>
#include <numbers>

#include "body/Pixels.h"
#include "creature/Companion.h"

namespace quibbits {

namespace {

constexpr double filling = 0.35;     // of a belly, per berry
constexpr double fullBelly = 0.85;   // above this it refuses
constexpr double hungryAgain = 0.6;  // hunger below which a new spell may be told of
constexpr double bitesPerMeal = 6;
constexpr Seconds chewing = 0.6;       // of one bite without an eating animation
constexpr Seconds afterMeal = 3.5;     // until it minds the pointer again
constexpr double foodHeight = 9;       // art pixels
constexpr double heldFoodHeight = 15;  // in a pose that holds the food up
constexpr int licks = 3;

}  // namespace

bool Companion::likes(Item item) const {
    return flavor(item) && flavor(item) == identity_.nature.up;
}
bool Companion::dislikes(Item item) const {
    return flavor(item) && flavor(item) == identity_.nature.down;
}

void Companion::itemNear(Point point) {
    if (!presence_.isReady() || attack_) return;
    if (attention_.isBusy(now()) || pet_.isAirborne()) return;
    attention_.watch(now());
    if (sitsQuietly()) return pet_.faceTowards(point);
    stop([this, point] {
        pet_.faceTowards(point);
        speak({.moment = Moment::itemNear,
               .face = Face::happy,
               .thought = Pixels::item(Item::azurine),
               .silent = 1.5});
        sit(2, [this] { think(); });
    });
}

/// Is busy with what it was given: the pointer that gave it lies on the creature, and petting or
/// curiosity would hide the answer.
void Companion::minds(Seconds gift) {
    attention_.pet(now());
    attention_.mind(now() + gift);
}

void Companion::received(Item item) {
    if (!presence_.isReady()) return;
    if (!isBerry(item)) {
        minds(2.5);
        if (!use(item)) feelIfShown(Face::surprised, {.seconds = 2.5});
        return;
    }
    if (needs().belly() > fullBelly) {
        minds(3);
        return speak(
            {.moment = Moment::full, .face = Face::sigh, .otherwise = name() + " is full."});
    }
    attention_.mind(now() + 2);
    stop([this, item] {
        eat(item, [this] {
            attention_.pet(now());
            think();
        });
    });
}

/// A new spell of hunger may be told of.
void Companion::forgetHunger() {
    hungerNotified_ = false;
    computer().notifications.removeDelivered(key("hungry"));
}

void Companion::eat(Item item, Done done) {
    needs_.eat(filling);
    needs_.forgetHunger();
    saveHungryMinutes();
    if (needs().hunger < hungryAgain) forgetHunger();
    const Image& picture = Pixels::item(item);
    const auto tongue = nibble();
    const Anim* licking = tongue && !a().canEat ? a().anim(tongue->anim) : nullptr;
    if (licking) return lickUp(item, *licking, *tongue, std::move(done));

    const Seconds bite = a().canEat ? a().eat.duration : chewing;
    const Seconds meal = bite * bitesPerMeal;
    const bool holdsUp = !a().canEat && a().eatHold;
    if (a().canEat)
        pet_.play(a().eat, bitesPerMeal);
    else
        pet_.hold(holdsUp ? *a().eatHold : a().idle, 0);
    const LayerRef food = pet_.holdFood(
        {.image = picture, .over = meal, .at = holdsUp ? heldFoodHeight : foodHeight});
    LayerRef crumbs;
    if (!a().canEat) {
        crumbs = pet_.munch(*food, {.crumbs = picture, .duration = meal, .chew = bite});
    }
    meal_ = pet_.begin([this, food, crumbs] {
        food->removeFromSuperlayer();
        if (crumbs) pet_.stopEmitting(crumbs);
    });
    attention_.mind(now() + meal + afterMeal);
    run({waiting(meal), doing([this, item] {
             meal_.end();
             taste(item);
         }),
         sitting(between(4, 7))},
        std::move(done));
}

void Companion::taste(Item item) {
    if (likes(item)) {
        speak({.moment = Moment::ateFavourite, .face = Face::joyous});
        pet_.hearts();
        gainEXP(0.15);
        befriend(4);
    } else if (dislikes(item)) {
        speak({.moment = Moment::ateDisliked, .face = Face::sigh});
        gainEXP(0.04);
        befriend(1);
    } else {
        const bool sated = needs().belly() > fullBelly;
        speak({.moment = sated ? Moment::full : Moment::ate, .face = Face::happy});
        gainEXP(0.08);
        befriend(2);
    }
}

void Companion::lickUp(Item item, const Anim& licking, const Nibble& tongue, Done done) {
    const Image& picture = Pixels::item(item);
    const double scale = pet_.scale();
    pet_.faceTowards(pet_.inFront({tongue.mouth.x, tongue.mouth.y}));  // not off the screen
    const double ahead = pet_.facesRight() ? 1 : -1;
    const Seconds once = licking.duration;
    const LayerRef food = pet_.holdFood(
        {.image = picture, .bites = licks, .over = once * licks, .at = tongue.mouth.y});
    food->removeAnimation("bites");
    {
        const Transaction still(food->engine(), Transaction::withoutActions());
        food->setPosition({tongue.mouth.x * scale * ahead, food->model().position.y});
    }
    food->add({.keyPath = KeyPath::positionY,
               .motion = BasicMotion{.from = 0.0, .to = 2 * scale},
               .timing = {.duration = 0.4, .repeatCount = forever, .autoreverses = true},
               .additive = true},
              "bob");
    meal_ = pet_.begin([food] { food->removeFromSuperlayer(); });
    attention_.mind(now() + once * licks + afterMeal);
    pet_.play(licking, licks);
    for (int n = 1; n <= licks; ++n) {
        pet_.after(tongue.bite + once * (n - 1),
                   [this, food, n, ahead, picture] { biteOff(*food, n, ahead, picture); });
    }
    const auto front = a().row(computer().resources, "Lick", 0);
    run({waiting(once * licks), doing([this, item] {
             meal_.end();
             taste(item);
         }),
         playing(front ? *front : licking), sitting(between(4, 7))},
        std::move(done));
}

void Companion::biteOff(Layer& food, int bite, double ahead, const Image& picture) {
    const double left = 1 - static_cast<double>(bite) / licks;
    food.add({.keyPath = KeyPath::transformScale,
              .motion = KeyframeMotion{.values = {1.0 / licks + left, (left + 0.1) * 1.25, left}},
              .timing = {.duration = 0.18}},
             "squish");
    {
        const Transaction still(food.engine(), Transaction::withoutActions());
        food.change([&](LayerProperties& l) {
            l.transform = Transform::scaled(left, left);
            l.position.x -= ahead * pet_.scale();
        });
    }
    const Point at = food.model().position;
    const Image crumb = picture.cropped(picture.width() / 2 - 1, picture.height() / 2 - 1, 2, 2);
    const LayerRef crumbs = pet_.emit({.image = crumb ? crumb : picture,
                                       .height = at.y / pet_.scale(),
                                       .rate = 30,
                                       .duration = 0.15,
                                       .velocity = 40,
                                       .spread = std::numbers::pi / 2,
                                       .lifetime = 0.6,
                                       .gravity = -160,
                                       .cellScale = 0.8 * pet_.scale(),
                                       .inFront = true});
    const Transaction still(crumbs->engine(), Transaction::withoutActions());
    crumbs->setPosition(at);
}

void Companion::askForBerry(std::optional<Point> target, Done done) {
    if (!hungerNotified_) {
        hungerNotified_ = true;
        notify({.title = name() + " is hungry",
                .body = "Drag a berry onto it from the menu bar dial.",
                .suffix = "hungry"});
    }
    std::vector<Step> steps;
    if (target)
        steps.push_back(going({.to = *target, .speed = 70}));
    else if (hasJustSaid())
        steps.push_back(waiting(3));  // until those words have been read
    steps.push_back(doing([this] {
        pet_.faceTowards(habitat_.pointer());
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
