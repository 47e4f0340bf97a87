// How a ghost deletes a file: with an orb that it throws, and eats with what the orb has swallowed.

#include "body/FileIcons.h"
#include "species/Umbrool.h"

namespace quibbits {

namespace {

// In art pixels, facing right.
constexpr Vector ahead{50, 12};  // to a file that shows nowhere
constexpr Vector mouthPlace{13, 14};

}  // namespace

Point Umbrool::besideBody(Vector artPixels) const {
    const double side = pet_.facesRight() ? artPixels.dx : -artPixels.dx;
    return pet_.position() + Vector{side, artPixels.dy} * pet_.scale();
}

void Umbrool::strikeFile(const std::string& path, std::optional<Point> place, Done next) {
    launch(path);
    gloomOrb(place.value_or(pet_.inFront(ahead)), path, std::move(next));
}

void Umbrool::boast(Done next) {
    cackle(Moment::deleted, std::move(next));
}

void Umbrool::gloomOrb(Point target, const std::string& path, Done done) {
    if (!habitat_.fx) return done();
    pet_.faceTowards(target);
    feel(Face::determined, {.caption = "Gloom Orb!", .seconds = 1.6});
    pet_.play(a().charge);
    const auto guarded = [&](auto act) { return pet_.lifetime().guard(std::move(act)); };
    // The orb flies on whatever befalls the creature, but does not pull it out of something new.
    const auto unlessCutOff = [&](auto act) {
        return guarded([this, token = pet_.token(), act = std::move(act)] {
            if (token == pet_.token()) act();
        });
    };
    habitat_.fx->gloomOrb({.start = besideBody(mouthPlace),
                           .target = target,
                           .icon = iconForFile(computer().files, path),
                           .mouth = guarded([this] { return besideBody(mouthPlace); }),
                           .throwing = unlessCutOff([this] {
                               const Anim* throws = a().role("throw");
                               const Anim& anim = throws ? *throws : a().shock;
                               pet_.play(anim, 1);
                               pet_.after(anim.duration, [this] { pet_.play(a().idle); });
                           }),
                           .impact = guarded([this, path] {
                               if (!path.empty()) destroy(path);
                           }),
                           .eaten = unlessCutOff([this, eating = firstOf({"Eat", "Lick"}, a().idle),
                                                  done = std::move(done)] {
                               pet_.hearts();
                               pet_.play(eating, 2);
                               pet_.after(eating.duration * 2, done);
                           })});
}

void Umbrool::cackle(std::optional<Moment> moment, Done done) {
    if (moment)
        speak({.moment = *moment, .face = Face::happy});
    else
        feelIfShown(Face::happy, {.seconds = 2});
    run({playing(front("Lick", front("Idle", a().pose)))}, std::move(done));
}

}  // namespace quibbits
