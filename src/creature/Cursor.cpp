// The pointer is the user's hand: a sitting creature watches it, is curious or startled when it
// comes, warms to it when it stays, and likes being petted, which is what resting on it means.

#include <cmath>

#include "body/Pixels.h"
#include "creature/Companion.h"

namespace quibbits {

namespace {

constexpr double headShare = 0.6;    // of the body's height, from where distances are measured
constexpr double watchRadius = 260;  // points
constexpr double steepness = 0.8;    // of dy to dx from where on it looks up or down
constexpr double besideIt = 12;      // points to the side that make it turn

// Friendship below which natures and feelings make it wary.
constexpr double wary = 70;
constexpr double shyWary = 150;
constexpr double shyPetted = 200;
constexpr double fond = 200;

constexpr Seconds pettingCounts = 900;  // between pettings that build friendship
constexpr Seconds missedYou = 1200;
constexpr double pettingShare = 0.03;  // of a level
constexpr double shyStep = 50;         // points

constexpr Seconds glanceLasts = 1.2;

}  // namespace

bool Companion::sitsQuietly() const {
    return attention_.seat() == pet_.token();
}

void Companion::watch(Point point) {
    const bool attentive = isOn(Setting::greetings) && sitsQuietly() && presence_.isReady() &&
                           !attention_.isBusy(now()) && !pet_.isAirborne() && !demoRunning_;
    if (!attentive) return;

    const Point here = pet_.position();
    const Vector way = point - Point{here.x, here.y + headShare * pet_.frame().height};
    Gaze seen = Gaze::ahead;
    if (way.length() >= watchRadius) {
        if (attention_.gaze() == Gaze::ahead) return;
        attention_.forgetApproach();
    } else {
        if (way.dy > steepness * std::abs(way.dx))
            seen = Gaze::up;
        else if (-way.dy > steepness * std::abs(way.dx))
            seen = Gaze::down;
        attention_.watch(now());
        const bool behindIt = (way.dx > 0) != pet_.facesRight();
        if (std::abs(way.dx) > besideIt && behindIt) pet_.face(way.dx > 0);
        react(point);
    }
    if (seen != attention_.gaze()) look(seen);
}

void Companion::look(Gaze gaze) {
    attention_.look(gaze);
    const Anim& pose = gaze == Gaze::up ? a().lookUp : gaze == Gaze::down ? a().lookDown : a().idle;
    pet_.hold(pose, 0);
}

void Companion::react(Point point) {
    const auto [visit, fast] = attention_.approach(point, now());
    const bool feels = isOn(Setting::relationship);
    if (visit == Attention::Visit::settles) return warmTo(feels);
    if (visit != Attention::Visit::begins || !attention_.notice(now())) return;

    const bool startled = fast || (identity_.nature.isShy() && needs().friendship < shyWary) ||
                          (feels && needs().friendship < wary);
    if (startled) return startle();
    speak({.moment = Moment::curious,
           .face = Face::surprised,
           .thought = Pixels::question(),
           .silent = 1.8});
}

void Companion::warmTo(bool feels) {
    if (feels && needs().friendship < wary) {
        return feelIfShown(Face::happy, {.thought = Pixels::question(), .seconds = 2});
    }
    speak({.moment = Moment::recognized,
           .face = Face::happy,
           .thought = Pixels::heart(),
           .silent = 2});
}

void Companion::startle() {
    speak({.moment = Moment::startled,
           .face = Face::worried,
           .thought = Pixels::exclaim(),
           .silent = 1.8});
    const Anim* flinch = a().role("flinch");
    if (!flinch) return pet_.squash();
    pet_.play(*flinch, 1);
    pet_.after(flinch->duration, [this, seat = attention_.seat()] {
        if (attention_.seat() == seat) look(Gaze::ahead);
    });
}

void Companion::cursorNearby(Point point) {
    const bool pettable = isOn(Setting::greetings) && presence_.isReady() && !pet_.isAirborne() &&
                          !demoRunning_ && !attention_.isBusy(now()) &&
                          attention_.mayBePetted(now()) && !attack_;
    if (!pettable) return;
    attention_.pet(now());
    pet_.interrupt();

    const bool shy = identity_.nature.isShy() && needs().friendship < shyPetted && random().coin();
    const Seconds missed = since(lastPetted_);
    if (!shy) {
        speak({.moment = mood() == Mood::tired ? Moment::pettedSleepy : Moment::petted,
               .face =
                   missed > missedYou || needs().friendship >= fond ? Face::joyous : Face::happy});
    }
    if (missed > pettingCounts) {
        befriend(pettingFriendship());
        gainEXP(pettingShare);
    }
    lastPetted_ = mark();
    if (shy)
        shyAway(point);
    else
        enjoyPetting(point);
}

void Companion::shyAway(Point point) {
    muse(Face::worried, {.seconds = 2});
    const Point here = pet_.position();
    const bool right = point.x < here.x;
    pet_.face(right);
    run({going({.to = {here.x + (right ? shyStep : -shyStep), here.y}, .speed = 70}), sitting(2)},
        [this] { think(); });
}

void Companion::enjoyPetting(Point point) {
    pet_.faceTowards(point);
    pet_.hearts();
    petted();
    if (pendingEvolution_) {
        feel(Face::inspired,
             {.caption = "Ready to evolve! Right-click me to choose.", .seconds = 3});
    }
    const bool tired = mood() == Mood::tired;
    pet_.play(tired ? a().nod : a().pose);
    run({waiting(tired ? 1.0 : 1.3), sitting(2)}, [this] { think(); });
}

void Companion::glance() {
    const bool curious = sitsQuietly() && attention_.gaze() == Gaze::ahead && presence_.isReady() &&
                         attention_.mayGlance(now());
    if (!curious) return;
    attention_.glance(now());
    pet_.hold(a().lookUp, 0);
    pet_.after(glanceLasts, [this, seat = attention_.seat()] {
        if (attention_.seat() == seat && attention_.gaze() == Gaze::ahead) pet_.hold(a().idle, 0);
    });
}

}  // namespace quibbits
