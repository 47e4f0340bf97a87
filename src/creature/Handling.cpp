// Being picked up, shaken and dropped.

#include <algorithm>

#include "creature/Companion.h"

namespace quibbits {

namespace {

constexpr Seconds dropsCount = 120;
constexpr int dizzySwings = 5;    // more than these make it dizzy
constexpr double softDrop = 50;   // points below which a drop is nothing
constexpr double hardDrop = 350;  // points above which it always hurts
constexpr std::size_t manyDrops = 3;
constexpr double lostFriendship = 10;
constexpr double trustingFriendship = 160;
constexpr Seconds pettableAgainIn = 2;

}  // namespace

void Companion::forgetOldDrops() {
    std::erase_if(drops_, [this](Instant d) { return now() - d > dropsCount; });
}

void Companion::pickedUp() {
    presence_.pickUp();
    pet_.interrupt();
    pet_.play(a().hurt);
    pet_.forgetSwings();
    forgetOldDrops();
    if (isOn(Setting::relationship) && drops_.size() >= 2) {
        speak({.moment = Moment::pickedUpWorried, .face = Face::worried});
    } else {
        const Face face = needs().friendship >= trustingFriendship ? Face::joyous : Face::surprised;
        speak({.moment = Moment::pickedUp, .face = face});
    }
}

void Companion::dropped() {
    presence_.putDown();
    pet_.interrupt();  // whatever began while it was held, such as waking up
    dizzyNext_ = pet_.swings() > dizzySwings;
    const Point here = pet_.position();
    const auto below = pet_.surfaceIndex(here);
    const double height = here.y - (below ? pet_.ground()[*below].y : 0);
    // The pointer that let it go lies on it, and petting would cut short how it lands.
    attention_.petAgainIn(pettableAgainIn, now());
    habitat_.onPlaceChanged();
    if (!floats() && height >= softDrop) {
        pet_.fall(Pet::Falling::freely, [this, height] { landed(height); });
        return;
    }
    if (floats()) pet_.hold(a().idle, 0);
    pet_.fall(falling(), [this] {
        attention_.petAgainIn(pettableAgainIn, now());
        if (mood() == Mood::fainted) return faint();  // it lay so before it was picked up
        if (dizzyNext_) return dizzySpell();
        sit(1.2, [this] { think(); });
    });
}

void Companion::landed(double height) {
    attention_.petAgainIn(pettableAgainIn, now());
    drops_.push_back(now());
    forgetOldDrops();
    if (mood() == Mood::fainted) return faint();
    const bool tooOften = isOn(Setting::relationship) && drops_.size() >= manyDrops;
    if (height > hardDrop || tooOften)
        landHard(height);
    else
        landSoftly();
}

void Companion::landSoftly() {
    if (dizzyNext_) {
        pet_.squash();
        return dizzySpell();
    }
    if (drops_.size() == 2) feelIfShown(Face::dizzy, {.seconds = 2.5});
    pet_.hold(a().charge, 0);
    pet_.squash();
    run({waiting(0.6), sitting(1.2)}, [this] { think(); });
}

void Companion::landHard(double height) {
    befriend(-lostFriendship);
    run({playing(height > hardDrop ? a().crash : a().pain), doing([this] {
             const Face face = isOn(Setting::relationship) ? Face::crying : Face::dizzy;
             speak({.moment = Moment::droppedHard, .face = face, .silent = 3.5, .spoken = 3.5});
         }),
         sitting(4)},
        [this] { think(); });
}

void Companion::dizzySpell() {
    dizzyNext_ = false;
    attention_.pet(now());
    pet_.hold(a().idle, 0);
    speak({.moment = Moment::dizzy,
           .face = Face::dizzy,
           .silent = 3,
           .otherwise = name() + " is dizzy…"});
    pet_.dizzy(2.7, a().idle.height);
    const Anim* wobble = a().role("wobble");
    run({waiting(2.8), wobble ? playing(*wobble, 3) : playing(a().nod, 2), sitting(1)},
        [this] { think(); });
}

}  // namespace quibbits
