#include "species/Sparrel.h"

#include <algorithm>
#include <array>

#include "rules/Region.h"
#include "rules/Thresholds.h"
#include "species/SheetNames.h"

namespace quibbits {

namespace {

constexpr std::string_view coralisForm = "coralis";
constexpr const char* coralianName = "Coralian Thrummet";

/// Playful moves that have to be learnt first.
struct Gate {
    std::string_view playful;
    std::string_view move;
};
constexpr std::array gates{
    Gate{"Rotate", "Mirror Step"},
    Gate{"Tumble", "Agility"},
    Gate{"Double", "Charm"},
};

const VoiceTable& lines() {
    static const VoiceTable table{
        {Moment::curious, {"{cry}? What's that? What's that?", "{cry}?! Is something there?"}},
        {Moment::recognized, {"{cry}! It's you! ♥", "{cry} {cry}! I knew it was you!"}},
        {Moment::startled, {"{cry}?! You scared me!", "Bzzt! Don't sneak up on me!"}},
        {Moment::petted,
         {"{cry}~ ♥ That feels nice!", "Hehe! My cheeks are sparking!",
          "{cry} {cry}! You're my favourite!"}},
        {Moment::pettedSleepy, {"{cry}… so sleepy…", "Low battery… but that's nice…"}},
        {Moment::pickedUp, {"{cry} {cry}! Wheee!", "Higher! Higher!"}},
        {Moment::pickedUpWorried, {"Don't drop me again, okay?", "{cry}… careful…"}},
        {Moment::droppedHard, {"Ow… that really hurt…", "{cry}… *sniff*"}},
        {Moment::dizzy, {"Everything's spinning… {cry}…"}},
        {Moment::askBerry,
         {"{cry}! I'm hungry! Got a berry?", "My tummy's sparking… food, please!"}},
        {Moment::ateFavourite, {"My favourite!! {cry} {cry}! ♥", "This is the best berry ever!"}},
        {Moment::ate, {"Yum! That hit the spot!", "{cry}! Delicious!"}},
        {Moment::ateDisliked, {"…Bleh. Thanks, I guess.", "{cry}… not my favourite."}},
        {Moment::full, {"I'm full! I couldn't eat another bite.", "{cry}… so stuffed!"}},
        {Moment::woke, {"*yawn* Fully charged!", "{cry}! Good nap!"}},
        {Moment::userBack, {"{cry}! You're back! I missed you!"}},
        {Moment::itemNear, {"Ooh! Is that for me?", "{cry}?! A berry?!"}},
        {Moment::offline, {"Huh? The signal's gone…"}},
        {Moment::online, {"Phew! Back online!"}},
        {Moment::hot, {"So hot… I'm overheating…"}},
        {Moment::deleted, {"Zap! Did you see that?!", "{cry}! Gone in a flash!"}},
        {Moment::celebrate, {"{cry} {cry}! We did it!"}},
        {Moment::failed, {"{cry}… ugh… we'll get it next time."}},
        {Moment::done, {"All done! Great job, partner!"}},
        {Moment::hello, {"{cry}! Hi there!"}},
        {Moment::playing, {"{cry}! Watch this!", "Hehe, this is fun!"}},
    };
    return table;
}

}  // namespace

Sparrel::Sparrel(const World& world) : Companion("pet", world) {
    awaken();
}

std::string Sparrel::sheetName(Stage of, const std::optional<std::string>& inForm,
                               bool isShiny) const {
    std::string base = of == Stage::egg ? "mizzle" : std::string(rawValue(of));
    if (of == Stage::thrummet && inForm == coralisForm) base += "-coralis";
    return withShiny(std::move(base), of, isShiny);
}

bool Sparrel::isCoralian() const {
    return stage() == Stage::thrummet && identity_.form == coralisForm;
}

std::string Sparrel::name() const {
    return isCoralian() ? coralianName : displayName(stage());
}

Ability Sparrel::ability() const {
    if (isCoralian()) {
        return {"Current Rider", "While your Mac is charging, it surfs around 50 % faster."};
    }
    return {"Lightning Rod",
            "While your Mac is charging, it soaks up the power: its energy refills and it doesn't "
            "get hungry."};
}

MoveNames Sparrel::known() const {
    return Growth::known(stage(), level(), isCoralian());
}

bool Sparrel::canEvolve() const {
    return stage() == Stage::sparrel && level() >= pebbleLevel;
}

double Sparrel::pettingFriendship() const {
    return knows("Cheek Rub") ? 3.0 : 2.0;
}

double Sparrel::paceBoost() const {
    return isCoralian() && power().charging() ? 1.5 : 1.0;
}

const VoiceTable& Sparrel::voice() const {
    return lines();
}

std::string Sparrel::cry() const {
    if (stage() == Stage::thrummet) return isCoralian() ? "Thrum thrum" : "Thrum";
    return stage() == Stage::mizzle ? "Mizzle" : "Sprr";
}

std::optional<Item> Sparrel::evolveItem() const {
    if (stage() == Stage::sparrel) return Item::stormPebble;
    return std::nullopt;
}

std::string Sparrel::evolutionName(Stage to, const std::optional<std::string>& inForm) const {
    return inForm == coralisForm ? coralianName : displayName(to);
}

bool Sparrel::absorbsCharge(double minutes) {
    if (!power().charging() || isCoralian()) return false;
    needs_.rest(minutes / 10);
    needs_.eat(minutes / 30);
    return true;
}

void Sparrel::didLevelUp() {
    if (stage() == Stage::mizzle && needs().friendship >= readyFriendship) {
        offerEvolution({.to = Stage::sparrel}, false);
    }
}

void Sparrel::refreshMoves() {
    pet_.setCanLeap(knows("Fleet Dash"));
}

void Sparrel::petted() {
    if (!knows("Sweet Peck")) return;
    pet_.runLoop().after(0.5, pet_.lifetime().guard([this] { pet_.hearts(); }));
}

bool Sparrel::use(Item item) {
    if (item != Item::stormPebble) return false;
    if (!canEvolve()) {
        feelIfShown(Face::surprised, {.seconds = 2.5});
        return true;
    }
    const bool abroad = currentRegion(computer().defaults) == Region::coralis;
    pendingEvolution_ = {Stage::thrummet,
                         abroad ? std::optional(std::string(coralisForm)) : std::nullopt};
    pet_.stage().showMenu();
    return true;
}

bool Sparrel::startDemo(const std::string& word) {
    if (word == "float" && floats()) {
        pet_.after(1, [this] { levitate(Air::any, [this] { think(); }); });
        return true;
    }
    if (word == "stone") pet_.after(2, [this] { received(Item::stormPebble); });
    if (word == "evolve" && stage() == Stage::mizzle) {
        needs_.befriend(readyFriendship + 10 - needs().friendship);
        nearlyReach(level() + 1);
        gainEXP(0.1);
    }
    return false;
}

std::vector<std::string> Sparrel::unlockedMoves() const {
    auto names = Companion::unlockedMoves();
    const MoveNames moves = known();
    std::erase_if(names, [&](const std::string& name) {
        const auto gate = std::ranges::find(gates, name, &Gate::playful);
        return gate != gates.end() && !moves.contains(gate->move);
    });
    return names;
}

void Sparrel::strikeFile(const std::string& path, std::optional<Point> place, Done next) {
    const double px = pet_.scale();
    const Point here = pet_.position();
    const Point chest{here.x, here.y + 16 * px};
    const Point target = place.value_or(pet_.inFront({30, 6}));
    const bool fromTheSky = !place && knows("Thunder");
    const Point from = fromTheSky ? Point{target.x, target.y + 1200} : chest;
    const bool strong = knows("Thunderbolt");

    feel(Face::determined, {.caption = strong ? "Thunderbolt!" : "Static Jolt!", .seconds = 1.5});
    pet_.faceTowards(target);
    startChargeSparks(10);
    pet_.play(a().charge);
    pet_.after(0.5, [this, path, from, target, strong, next = std::move(next)] {
        chargeSparks_.end();
        pet_.play(a().shock, 3);
        pet_.after(a().shock.duration * 3, next);
        launch(path);
        habitat_.fx->bolt({.from = from, .to = target, .thickness = strong ? 2.0 : 1.0},
                          pet_.lifetime().guard([this, path] { destroy(path); }));
    });
}

void Sparrel::boast(Done next) {
    victoryLap(std::move(next));
}

void Sparrel::chargerPlugged() {
    feel(Face::joyous, {.caption = ability().name + " is drawing in the power!", .seconds = 3});
    if (!knows("Spark")) return Companion::chargerPlugged();

    std::vector<Step> steps;
    if (presence_.isFainted()) steps.push_back(playing(a().wake));
    presence_.comeRound();
    steps.push_back(doing([this] { pet_.sparks(24, 0.5); }));
    steps.push_back(playing(a().shock, 2));
    steps.push_back(doing([this] {
        startChargeSparks(6);
        pet_.play(a().charge);
    }));
    steps.push_back(waiting(1.0));
    stop([this, steps = std::move(steps)] { run(steps, [this] { think(); }); });
}

void Sparrel::celebrateHook() {
    stop([this] {
        speak({.moment = Moment::celebrate, .face = Face::joyous});
        gainEXP(0.05);
        if (knows("Discharge"))
            pet_.sparks(60, 1.2);
        else
            pet_.sparks(24, 0.6);
        run({playing(a().shock, 2), playing(a().pose)}, [this] { think(); });
    });
}

}  // namespace quibbits
