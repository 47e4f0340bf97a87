// Into the ball and out of it, out of the egg, and from one form into the next.

#include <algorithm>
#include <array>
#include <cmath>

#include "creature/Companion.h"

namespace quibbits {

namespace {

// Where a called creature stands, in points.
constexpr double wideSpot = 120;
constexpr double spotMargin = 60;

// In art pixels.
constexpr double lookAlongThrow = 40;
constexpr double ballAside = 22;  // from where the ball lands to the creature
constexpr double hopControl = 56;
constexpr Seconds hopTime = 0.6;

constexpr Seconds introduction = 3.5;  // of each bubble
constexpr Seconds introductionPause = 3.7;

constexpr Seconds flickerDelay = 0.8;
/// Ever faster: the time before each flip.
constexpr std::array flips{0.5, 0.42, 0.36, 0.3, 0.24, 0.19, 0.15, 0.12, 0.09, 0.07, 0.06, 0.05};
constexpr Seconds afterFlips = 0.6;
constexpr Seconds evolutionBubble = 3.5;
constexpr Seconds evolutionPause = 3.8;

double distanceTo(const Range& span, double x) {
    return span.contains(x) ? 0 : std::min(std::abs(span.lo - x), std::abs(span.hi - x));
}

}  // namespace

void Companion::toggleBall(Point from) {
    if (presence_.isHeld() || presence_.isBusy() || !habitat_.fx) return;
    if (stage() == Stage::egg) return hatch(from);
    demoRunning_ = false;
    presence_.wake();
    pet_.setInteractive(false);
    if (presence_.isOut())
        goIn();
    else
        comeOut(from);
}

void Companion::goIn() {
    presence_.call();
    stop([this] {
        pet_.hold(a().idle, 0);
        presence_.drawIn();
        habitat_.fx->recall(pet_, pet_.lifetime().guard([this] {
            presence_.goneIn();
            save();
            // The call may have ended before it was in.
            if (hiddenForCall_ && !senses().cameraOn()) cameraChanged(false);
            habitat_.onPlaceChanged();
        }));
        habitat_.onPlaceChanged();
    });
}

void Companion::comeOut(Point from) {
    presence_.comeOut();
    pet_.interrupt();
    const Point spot = summonSpot();
    const bool right = pet_.walkArea().lo + lookAlongThrow * pet_.scale() < spot.x;
    pet_.face(right);
    pet_.hold(a().idle, 0);
    const double aside = ballAside * pet_.scale();
    const Point ground{spot.x + (right ? -aside : aside), spot.y};
    habitat_.fx->release(pet_, {.from = from, .ground = ground, .spot = spot},
                         pet_.lifetime().guard([this] {
                             becomeFree();
                             presence_.comeRound();
                             comeOutRoutine([this] { think(); });
                         }));
}

void Companion::becomeFree() {
    presence_.arrive();
    if (isOutOfSight()) standUp();  // the screen changed while it came out
    pet_.setInteractive(true);
    lastMood_ = mood();
    habitat_.onPlaceChanged();
}

void Companion::comeOutRoutine(Done done) {
    const auto hop = [this](Done next) {
        const Point here = pet_.position();
        const Point control = here + Vector{0, hopControl * pet_.scale()};
        pet_.play(a().hop, 1);
        pet_.move(here, {.duration = hopTime, .path = Path::quad(here, here, control)},
                  std::move(next));
    };
    run({playing(a().stretch), waiting(0.5), hop, doing([this] {
             pet_.squash();
             feelIfShown(Face::joyous, {.seconds = 2});
         })},
        std::move(done));
}

Point Companion::summonSpot() const {
    const double middle = pet_.walkArea().middle();
    std::optional<Ground> nearest;
    for (const Ground& spot : pet_.stage().openSpots()) {
        if (!spot.solid || spot.span.width() <= wideSpot) continue;
        if (!nearest || distanceTo(spot.span, middle) < distanceTo(nearest->span, middle)) {
            nearest = spot;
        }
    }
    if (!nearest) return {middle, pet_.floorY(middle)};
    const Range room{nearest->span.lo + spotMargin, nearest->span.hi - spotMargin};
    return {room.clamp(middle), nearest->y};
}

// Out of the egg --------------------------------------------------------------------------------

void Companion::hatch(Point from) {
    presence_.comeOut();
    pet_.setInteractive(false);
    rollAnew();
    save();
    refreshMoves();
    pet_.face(true);
    pet_.hold(a().idle, 0);
    const double x = pet_.walkArea().middle();
    habitat_.fx->hatch(pet_, from, {x, pet_.floorY(x)}, pet_.lifetime().guard([this] {
        becomeFree();
        lastThought_ = mark();
        lastPetted_ = mark();
        introduceItself();
    }));
}

void Companion::rollAnew() {
    become(Identity::hatched(firstStage(), random(), computer().defaults.boolean("QuibShiny")));
    needs_.beginAnew();
}

void Companion::introduceItself() {
    pet_.hearts();
    if (identity_.shiny) pet_.stars();
    const std::string who = name() + " " + identity_.gender;
    const auto say = [this](Face face, std::string caption) {
        return doing([this, face, caption = std::move(caption)] {
            feel(face, {.caption = caption, .seconds = introduction});
        });
    };
    run({say(Face::joyous,
             identity_.shiny ? "A shiny " + who + " hatched! ✨" : who + " hatched from the Egg!"),
         waiting(introductionPause), say(Face::inspired, "Its ability is " + ability().name + "!"),
         doing([this] { pet_.sparks(14, 0.5); }), waiting(introductionPause),
         say(Face::happy, "It has a " + std::string(identity_.nature.name) + " nature."),
         waiting(introductionPause)},
        [this] { think(); });
}

void Companion::restart() {
    if (presence_.isBusy() || presence_.isHeld()) return;
    breakOff();
    presence_.wake();
    presence_.comeRound();
    hiddenForCall_ = false;
    withdrawOffer();
    forgetHunger();
    become(identity_.asEgg());
    needs_.meetAnew();
    save();
    stayIn();
    habitat_.onPlaceChanged();
}

// From one form into the next -------------------------------------------------------------------

void Companion::offerEvolution(const Evolution& evolution, bool askNow) {
    if (pendingEvolution_ && !askNow) return;
    pendingEvolution_ = evolution;
    if (askNow) {
        pet_.stage().showMenu();
        return;
    }
    feel(Face::inspired,
         {.caption = name() + " is ready to evolve! Right-click it to choose.", .seconds = 4});
    notify({.title = name() + " is ready to evolve!",
            .body = "Evolve into " + evolutionName(evolution.to, evolution.form) + "?",
            .suffix = "evolve",
            .category = "evolve",
            .sound = true});
}

void Companion::withdrawOffer() {
    pendingEvolution_.reset();
    computer().notifications.removeDelivered(key("evolve"));
}

void Companion::answerEvolution(bool yes) {
    if (!pendingEvolution_) return;
    const Evolution offer = *pendingEvolution_;
    withdrawOffer();
    if (yes) return evolve(offer);
    feel(Face::happy, {.caption = name() + " stays as it is, for now.", .seconds = 3});
}

void Companion::evolve(const Evolution& evolution) {
    if (!presence_.isReady()) {
        pendingEvolution_ = evolution;
        return;
    }
    presence_.beginToEvolve();
    pet_.setInteractive(false);
    stop([this, evolution, oldName = name(), knewBefore = known()] {
        const Sheets before = a();
        const Sheets after(computer().resources,
                           sheetName(evolution.to, evolution.form, identity_.shiny), animRoles());
        const Step announce = [this, oldName](Done next) {
            feel(Face::joyous, {.caption = oldName + " evolved into " + name() + "!",
                                .seconds = evolutionBubble});
            pet_.after(evolutionPause, std::move(next));
        };
        run({flicker(before, after), waiting(afterFlips),
             doing([this, evolution, after] { transform(evolution, after); }), announce,
             doing([this, knewBefore] {
                 if (light_) light_->removeFromSuperlayer();
                 light_ = nullptr;
                 if (const Move* learnt = moveToAnnounce(knewBefore)) {
                     feel(Face::inspired,
                          {.caption = name() + " learned " + std::string(learnt->name) + "!",
                           .seconds = evolutionBubble});
                 }
             })},
            [this] {
                presence_.haveEvolved();
                pet_.setInteractive(true);
                think();
                habitat_.onPlaceChanged();
            });
    });
}

/// The body as a white shape that changes to and fro between both forms, faster and faster.
Step Companion::flicker(const Sheets& before, const Sheets& after) {
    const auto showLight = [this](const Anim& pose) {
        if (light_) light_->removeFromSuperlayer();
        pet_.hold(pose, 0);
        light_ = pet_.silhouette(Color::white());
    };
    std::vector<Step> steps{doing([showLight, pose = before.idle] { showLight(pose); }),
                            waiting(flickerDelay)};
    for (std::size_t k = 0; k < flips.size(); ++k) {
        steps.push_back(waiting(flips[k]));
        steps.push_back(
            doing([showLight, pose = k % 2 == 0 ? after.idle : before.idle] { showLight(pose); }));
    }
    return [steps = std::move(steps)](Done next) { run(steps, std::move(next)); };
}

void Companion::transform(const Evolution& evolution, const Sheets& sheets) {
    if (light_) light_->removeFromSuperlayer();
    Identity grown = identity_;
    grown.stage = evolution.to;
    grown.form = evolution.form;
    become(std::move(grown), sheets);
    save();
    refreshMoves();
    pet_.hold(a().idle, 0);
    light_ = pet_.silhouette(Color::white());
    // A layer that nobody has seen yet does not fade by itself.
    light_->setOpacity(0);
    light_->add({.keyPath = KeyPath::opacity,
                 .motion = BasicMotion{.from = 1.0},
                 .timing = {.duration = LayerEngine::implicitDuration}},
                "fade");
    pet_.sparks(30, 0.8);
    pet_.hearts();
}

const Move* Companion::moveToAnnounce(const MoveNames& knewBefore) const {
    const MoveNames knowsNow = known();
    const MoveNames preferred = signatureMoves();
    const Move* telling = nullptr;  // the first that changes anything
    for (const Move& move : learnset()) {
        if (!knowsNow.contains(move.name) || knewBefore.contains(move.name)) continue;
        if (preferred.contains(move.name)) return &move;
        if (!telling && move.effect) telling = &move;
    }
    return telling;
}

}  // namespace quibbits
