// A ghost's jokes on its person: it licks the screen, carries the pointer off, splits into shadows,
// loses its own, and plays pranks. Nothing of the user's is touched: all is drawn, and the real
// pointer, hidden meanwhile, comes back where it was left.

#include <algorithm>
#include <array>

#include "body/Pixels.h"
#include "species/Umbrool.h"

namespace quibbits {

namespace {

constexpr double trickShare = 0.04;  // of a level, for every trick
constexpr double lickEnergy = 0.03;
constexpr double trickEnergy = 0.04;

constexpr double bigTongue = 1.8;  // times its size
constexpr Seconds zooming = 0.35;
constexpr double lowest = 40;  // points
constexpr double lowestCeiling = 200;

constexpr double pointerMoved = 15;  // points that spoil a theft
constexpr Seconds gloating = 30;
constexpr Range stillFor{90, 280};  // seconds without a touch of the mouse

// In art pixels.
constexpr double besidePointer = 12;
constexpr double belowPointer = 24;
constexpr double cloneWay = 34;
constexpr double shadowWay = 45;
constexpr double printStep = 16;
constexpr double dockMargin = 30;

constexpr Seconds printEvery = 0.35;

}  // namespace

bool Umbrool::canSteal() const {
    return isOn("umbrool.stealsCursor") && stage() == Stage::umbrool && a().anim("Pull") &&
           stillFor.contains(computer().pointer.untouched()) &&
           pet_.stage().isVisible(habitat_.pointer());
}

double Umbrool::clamped(double x) const {
    return pet_.walkArea().clamp(x);
}

Anim Umbrool::firstOf(std::initializer_list<const char*> names, const Anim& otherwise) const {
    for (const char* name : names) {
        if (const Anim* anim = a().anim(name)) return *anim;
    }
    return otherwise;
}

void Umbrool::zoom(double to, Seconds over) {
    pet_.node().add(
        {.keyPath = KeyPath::transformScale,
         .motion = BasicMotion{.from = pet_.node().presentation().transform.scaleX, .to = to},
         .curve = TimingFunction::easeInEaseOut(),
         .timing = {.duration = over, .fill = FillMode::forwards, .removedOnCompletion = false}},
        "zoom");
}

void Umbrool::giveBack() {
    giveCursorBack(Laughing::no);
}

// The tongue ------------------------------------------------------------------------------------

void Umbrool::lick(Done done) {
    const auto tongue = a().row(computer().resources, "Lick", 0);
    if (!habitat_.fx || !tongue) return sit(3, std::move(done));
    const Point pointer = habitat_.pointer();
    Point spot = pet_.position();
    if (pet_.stage().isVisible(pointer)) {
        spot = {pointer.x + between(-160, 160), std::max(lowest, pointer.y - 140)};
    }
    spot = {clamped(spot.x), std::min(spot.y, std::max(lowestCeiling, pet_.terrain().ceiling))};
    needs_.tire(lickEnergy);
    gainEXP(trickShare);

    const Step licks = [this, tongue = *tongue](Done next) {
        zoomed_ = pet_.begin([this] {
            pet_.node().removeAnimation("zoom");
            pet_.makeRoomFor(1);
        });
        pet_.makeRoomFor(bigTongue);
        feel(Face::joyous, {.caption = "*lick*", .seconds = 2});
        pet_.play(tongue);
        zoom(bigTongue, zooming);
        const auto mouth = [this, tongue] {
            return pet_.position() + Vector{0, tongue.height * 0.2 * pet_.scale() * bigTongue};
        };
        pet_.after(0.45, [this, mouth] { habitat_.fx->saliva(mouth()); });
        pet_.after(tongue.duration + 0.45, [this, mouth] {
            if (random().coin())
                habitat_.fx->saliva(mouth() + Vector{pet_.scale() * between(-12, 12), 0});
        });
        pet_.after(3 * tongue.duration, [this, next = std::move(next)] {
            zoom(1, zooming);
            pet_.after(0.4, [this, next] {
                zoomed_.end();
                next();
            });
        });
    };
    const Step admires = [this](Done next) {
        feelIfShown(Face::happy, {.seconds = 1.5});
        const Point here = pet_.position();
        const double aside = (random().coin() ? cloneWay : -cloneWay) * pet_.scale();
        go({.to = {clamped(here.x + aside), here.y}, .speed = 120}, std::move(next));
    };
    run({going({.to = spot, .speed = 160}), licks, admires, sitting(1.5)}, std::move(done));
}

// The stolen pointer ----------------------------------------------------------------------------

void Umbrool::snatch(Done done) {
    const Anim* pulls = a().anim("Pull");
    if (stage() != Stage::umbrool || !pulls) return lick(std::move(done));
    const double px = pet_.scale();
    const Point prey = habitat_.pointer();
    const double side = pet_.position().x < prey.x ? -besidePointer : besidePointer;
    const Point spot{clamped(prey.x + side * px), std::max(0.0, prey.y - belowPointer * px)};
    muse(Face::happy, {.thought = Pixels::exclaim(), .seconds = 1.5});
    go({.to = spot, .speed = 180}, [this, prey, pulls = *pulls, done = std::move(done)] {
        const bool fled = distance(habitat_.pointer(), prey) >= pointerMoved;
        if (fled || !computer().pointer.setHidden(true)) return sit(2, done);
        grab(prey);
        pet_.face(pet_.position().x < prey.x);
        const Step carry = [this](Done next) {
            const Point away{between(pet_.walkArea().lo, pet_.walkArea().hi),
                             between(60, std::max(120.0, pet_.terrain().ceiling * 0.8))};
            go({.to = away, .speed = 220}, std::move(next));
        };
        run({playing(pulls, 2), carry, [this](Done next) { gloat(std::move(next)); }}, done);
    });
}

void Umbrool::gloat(Done done) {
    feel(Face::joyous, {.caption = "Hehe! Mine now.", .seconds = 3});
    pet_.play(front("Idle", a().idle));
    bob();
    const auto finish = [this, once = std::make_shared<bool>(false), token = pet_.token(),
                         done = std::move(done)] {
        if (std::exchange(*once, true) || token != pet_.token()) return;
        bobbing_.end();
        done();
    };
    onCursorBack_ = finish;
    pet_.after(gloating, [this, finish] {
        giveCursorBack(Laughing::yes);
        finish();
    });
}

void Umbrool::grab(Point at) {
    if (fakeCursor_) fakeCursor_->removeFromSuperlayer();
    const PointerPicture arrow = computer().pointer.picture();
    LayerEngine& engine = pet_.node().engine();
    const Transaction still(engine, Transaction::withoutActions());
    fakeCursor_ = engine.makeLayer(
        {.bounds = {0, 0, arrow.size.width, arrow.size.height},
         .position = Point{} + (at - pet_.position()),
         .anchorPoint = {arrow.size.width > 0 ? arrow.hotSpot.x / arrow.size.width : 0,
                         arrow.size.height > 0 ? 1 - arrow.hotSpot.y / arrow.size.height : 1},
         .content = Picture{arrow.image}});
    pet_.node().addSublayer(fakeCursor_);
    mouseWatch_ = computer().pointer.touched.subscribe([this] {
        // Not from within the signal, whose listener this is.
        pet_.runLoop().post(pet_.lifetime().guard([this] {
            if (!mouseWatch_) return;
            const auto back = std::exchange(onCursorBack_, nullptr);
            giveCursorBack(Laughing::yes);
            if (back) back();
        }));
    });
}

void Umbrool::giveCursorBack(Laughing laughing) {
    if (!fakeCursor_ && !mouseWatch_) return;
    mouseWatch_.reset();
    onCursorBack_ = nullptr;
    computer().pointer.setHidden(false);
    if (const LayerRef arrow = std::exchange(fakeCursor_, nullptr)) arrow->removeFromSuperlayer();
    if (laughing == Laughing::no) return;
    feel(Face::joyous, {.caption = "Peek-a-boo! 👻", .seconds = 2.5});
    if (const auto laugh = a().row(computer().resources, "Lick", 0)) {
        pet_.play(*laugh, 1);
        pet_.after(laugh->duration, [this] { pet_.play(a().idle); });
    }
}

// Shadows ---------------------------------------------------------------------------------------

void Umbrool::slide(const LayerRef& layer, Point to, Seconds over) {
    const Transaction still(pet_.node().engine(), Transaction::withoutActions());
    const Point from = layer->presentation().position;
    layer->setPosition(to);
    layer->add({.keyPath = KeyPath::position,
                .motion = BasicMotion{.from = from, .to = to},
                .curve = TimingFunction::easeInEaseOut(),
                .timing = {.duration = over}},
               "slide");
}

void Umbrool::clone(Done done) {
    const Anim anim = front("Idle", a().idle);
    const double px = pet_.scale();
    const Point here = pet_.position();
    std::array offsets{-1.0, 1.0, random().coin() ? 2.0 : -2.0};
    std::vector<Point> spots;
    const std::size_t count = random().coin() ? 2 : 3;
    for (std::size_t i = 0; i < count; ++i) {
        const double x = clamped(here.x + offsets[i] * cloneWay * px);
        // It may come to stand there itself, and nobody stands below the floor.
        spots.push_back({x, std::max(here.y + px * between(-6, 6), pet_.floorY(x))});
    }
    pet_.face(true);
    pet_.play(anim);
    feel(Face::joyous, {.caption = "Which one's the real me?", .seconds = 3});
    needs_.tire(trickEnergy);
    gainEXP(trickShare);
    beginShades();
    for (const Point& spot : spots) {
        shades_.push_back(shade(anim, here, true, 0.8));
        slide(shades_.back(), spot, 0.35);
    }
    const auto swap = random().coin() ? std::optional(random().index(spots.size())) : std::nullopt;
    const auto trade = [this, swap, spots, here] {
        if (!swap) return;
        slide(shades_[*swap], here, 0.4);
        pet_.move(spots[*swap], {.duration = 0.4, .timing = TimingFunction::easeInEaseOut()}, {});
    };
    const auto scatter = [this] {
        for (std::size_t i = 0; i < shades_.size(); ++i) {
            vanish(shades_[i],
                   {.after = static_cast<double>(i) * 0.15, .over = 0.3, .shrinks = true});
        }
        shades_.clear();
        feelIfShown(Face::happy, {.seconds = 1.5});
    };
    run({waiting(2.6), doing(trade), waiting(1.4), doing(scatter), playing(front("Lick", anim)),
         sitting(1.5)},
        std::move(done));
}

void Umbrool::replaceShadow(const Anim& anim, bool right) {
    const Point at = shades_.empty() ? pet_.position() : shades_.front()->presentation().position;
    beginShades();
    shades_.push_back(shade(anim, at, right, 0.6));
}

void Umbrool::shadowGag(Done done) {
    const Point here = pet_.position();
    const bool leavesRight = here.x < pet_.walkArea().middle();
    const double way = (leavesRight ? shadowWay : -shadowWay) * pet_.scale();
    const Point far{clamped(here.x + way), here.y};
    beginShades();
    pet_.face(!leavesRight);
    pet_.hold(a().idle, 0);
    shades_.push_back(shade(a().walk, here, leavesRight, 0.6));
    needs_.tire(trickEnergy);
    gainEXP(trickShare);

    const Anim* flinch = a().role("flinch");
    const Step notice = [this, leavesRight, flinch](Done next) {
        replaceShadow(front("Lick", a().idle), true);
        pet_.face(leavesRight);
        feel(Face::surprised,
             {.caption = "Hey! Come back!", .thought = Pixels::exclaim(), .seconds = 2.2});
        if (flinch) return playing(*flinch)(std::move(next));
        pet_.squash();
        pet_.after(0.6, std::move(next));
    };
    const Step tradePlaces = [this, leavesRight, here, far](Done next) {
        replaceShadow(a().walk, !leavesRight);
        slide(shades_.front(), here, 0.9);
        go({.to = far, .speed = 140}, std::move(next));
    };
    const auto rejoin = [this, leavesRight] {
        for (const LayerRef& layer : shades_) {
            vanish(layer, {.after = 0.2, .over = 0.6, .shrinks = true});
        }
        shades_.clear();
        pet_.face(!leavesRight);
        pet_.hold(a().idle, 0);
        feel(Face::dizzy, {.caption = "…Which of us was the shadow?", .seconds = 3});
    };
    run({waiting(0.8), doing([this, far] { slide(shades_.front(), far, 1.4); }), waiting(1.5),
         notice, tradePlaces, doing(rejoin), waiting(1), sitting(2)},
        std::move(done));
}

// Pranks ----------------------------------------------------------------------------------------

void Umbrool::prank(Done done) {
    std::vector<std::function<void(Done)>> choices;
    choices.push_back([this](Done next) { handprints(std::move(next)); });
    if (pet_.ground().size() == 3) {  // a dock, and no icons on the desktop
        const Ground dock = pet_.ground()[1];
        if (pet_.stage().isVisible({dock.span.middle(), dock.y + 20})) {
            choices.push_back([this, dock](Done next) { tickleDock(dock, std::move(next)); });
        }
    }
    if (const auto window = pet_.stage().frontWindow()) {
        choices.push_back(
            [this, window = *window](Done next) { tugWindow(window, std::move(next)); });
    }
    needs_.tire(trickEnergy);
    gainEXP(trickShare);
    random().pick(choices)(std::move(done));
}

void Umbrool::tickleDock(const Ground& dock, Done done) {
    const double px = pet_.scale();
    const Range room{dock.span.lo + dockMargin * px, dock.span.hi - dockMargin * px};
    const double x = room.width() > 0 ? between(room.lo, room.hi) : dock.span.middle();
    const auto tickle = [this] {
        feel(Face::joyous, {.caption = "Tickle tickle!", .seconds = 2.5});
        pet_.stars();
    };
    run({going({.to = {x, dock.y + 4 * px}, .speed = 160}), doing(tickle),
         playing(firstOf({"Swing", "Strike"}, a().shock), 3),
         [this](Done next) { cackle(std::nullopt, std::move(next)); }},
        std::move(done));
}

void Umbrool::tugWindow(const Rect& window, Done done) {
    const double px = pet_.scale();
    const bool right = random().coin();
    const Point corner{clamped(right ? window.maxX() - 6 * px : window.minX() + 6 * px),
                       std::min(window.maxY() - 2 * px, lookout(window, 1))};
    const auto tug = [this, right] {
        pet_.face(right);
        feel(Face::determined, {.caption = "Nngh… come… here…!", .seconds = 3});
    };
    const auto giveUp = [this] {
        feel(Face::dizzy, {.caption = "Oof! Too heavy.", .seconds = 2.5});
    };
    run({going({.to = corner, .speed = 170}), doing(tug),
         playing(firstOf({"Pull", "Attack"}, a().shock), 3), doing(giveUp),
         playing(firstOf({"TumbleBack", "Trip"}, a().hurt)),
         doing([this] { pet_.play(front("Idle", a().idle)); })},
        std::move(done));
}

void Umbrool::handprints(Done done) {
    const double px = pet_.scale();
    const Point pointer = habitat_.pointer();
    Point start = pet_.position();
    if (pet_.stage().isVisible(pointer)) {
        start = {clamped(pointer.x - 80 * px), std::max(pointer.y - 40 * px, 60.0)};
    }
    const bool right = start.x < pet_.walkArea().middle();
    const double step = (right ? printStep : -printStep) * px;
    const std::size_t count = 4 + random().index(3);
    std::vector<Point> prints;
    for (std::size_t i = 0; i < count; ++i) {
        const double sway = (i % 2 == 0 ? 4 : -4) * px;
        prints.push_back({start.x + static_cast<double>(i) * step, start.y + 18 * px + sway});
    }
    const Point end{clamped(start.x + static_cast<double>(count) * step), start.y};
    const Seconds over = static_cast<double>(count) * printEvery;
    const Step pat = [this, prints, right, end, over](Done next) {
        if (!habitat_.fx) return next();
        feel(Face::joyous, {.caption = "Pat pat pat!", .seconds = 2.5});
        habitat_.fx->stamp(Pixels::handprint(), prints, printEvery, true);
        pet_.face(right);
        pet_.play(firstOf({"Strike", "Attack"}, a().walk));
        pet_.move(end, {.duration = over}, std::move(next));
    };
    run({going({.to = start, .speed = 170}), pat,
         [this](Done next) { cackle(std::nullopt, std::move(next)); }},
        std::move(done));
}

}  // namespace quibbits
