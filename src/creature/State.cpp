// What a creature is, how it is remembered, and what others may see of it.

#include <algorithm>
#include <utility>

#include "body/Pixels.h"
#include "creature/Companion.h"

namespace quibbits {

namespace {

constexpr double artScale = 3;  // points per sheet pixel
constexpr Seconds anHour = 3600;

constexpr double initialEnergy = 0.8;
constexpr double initialHunger = 0.3;
constexpr double initialFriendship = 120;

// Friendship from which the portrait in lists looks content, and glad.
constexpr double contentFriendship = 70;
constexpr double gladFriendship = 200;

}  // namespace

Companion::Companion(std::string store, const World& world)
    : pet_(world.layers, world.computer.text, artScale),
      store_(std::move(store)),
      world_(world),
      lastThought_(mark()),
      lastPetted_(lastThought_) {
    restore();
    wasCharging_ = power().charging();
}

Companion::~Companion() = default;

std::string Companion::key(std::string_view suffix) const {
    return store_ + "." + std::string(suffix);
}

double Companion::savedNumber(std::string_view suffix, double otherwise) const {
    return computer().defaults.onlyNumber(key(suffix)).value_or(otherwise);
}

void Companion::restore() {
    const UserDefaults& saved = computer().defaults;
    stage = stageNamed(saved.string(key("stage")).value_or("")).value_or(Stage::egg);
    form = saved.onlyString(key("form"));
    shiny = saved.boolean(key("shiny"));
    const auto savedNature = Nature::named(saved.string(key("nature")).value_or(""));
    nature = savedNature ? *savedNature : random().pick(Nature::all());
    shimmerpoxUntil = saved.onlyDate(key("shimmerpox"));
    const auto savedGender = saved.onlyString(key("gender"));
    gender = savedGender ? *savedGender : random().below(1) < 0.5 ? "♀" : "♂";
    energy = std::clamp(savedNumber("energy", initialEnergy), 0.0, 1.0);
    hunger = std::clamp(savedNumber("hunger", initialHunger), 0.0, 1.0);
    friendship = std::clamp(savedNumber("friendship", initialFriendship), 0.0, mostFriendship);
    exp = std::clamp(savedNumber("exp", 0), 0.0, expForLevel(growthRate(stage), maxLevel));
    hungryMinutes = std::max(savedNumber("hungryMinutes", 0), 0.0);
    focusQuiet = saved.boolean("focus.on");
}

void Companion::awaken() {
    // A stage of the other line is as good as none.
    const auto own = quibbits::line(firstStage());
    if (std::ranges::find(own, stage) == own.end()) stage = Stage::egg;
    pet_.hold(a().idle, 0);
    isOut = stage != Stage::egg;
    {
        const Transaction still(world_.layers, Transaction::withoutActions());
        pet_.node().setHidden(!isOut);
    }
    refreshMoves();
    joinBody();
}

void Companion::joinBody() {
    // The body is a part of the creature, so these may name it plainly.
    pet_.onHover = [this](Point at) { cursorNearby(at); };
    pet_.onCursor = [this](Point at) { watch(at); };
    pet_.onItem = [this](Item item) { received(item); };
    pet_.onItemNear = [this](Point at) { itemNear(at); };
    pet_.onMoved = [this] { return findFeet(); };
    subscriptions_.push_back(computer().workspace.activated.subscribe([this] { glance(); }));
    pet_.onMenu = [this] { return menu(); };
    pet_.onZap = [this](const std::vector<std::string>& paths) { zap(paths); };
    pet_.onPickUp = [this] { pickedUp(); };
    pet_.onDrop = [this] { dropped(); };
    // The ground may change while the creature thinks; it looks down afterwards.
    pet_.onGroundChanged = [this] {
        pet_.runLoop().post(pet_.lifetime().guard([this] { groundChanged(); }));
    };
}

void Companion::stayIn() {
    isOut = false;
    const Transaction still(world_.layers, Transaction::withoutActions());
    pet_.node().setHidden(true);
}

const Sheets& Companion::a() const {
    if (!sheets_) sheets_.emplace(computer().resources, sheetName(stage, form, shiny), animRoles());
    return *sheets_;
}

void Companion::start() {
    lastMood_ = mood();
    if (stage == Stage::egg || !isOut) return;
    const std::string word = computer().defaults.string("QuibDemo").value_or("");
    if (!startDemo(word)) runDemo(word);
}

void Companion::save() {
    UserDefaults& saved = computer().defaults;
    saved.set(key("energy"), energy);
    saved.set(key("hunger"), hunger);
    saved.set(key("friendship"), friendship);
    saved.set(key("exp"), exp);
    saved.set(key("stage"), std::string(rawValue(stage)));
    saved.set(key("gender"), gender);
    saved.set(key("nature"), std::string(nature.name));
    saved.set(key("shiny"), shiny);
    if (form)
        saved.set(key("form"), *form);
    else
        saved.remove(key("form"));
    if (shimmerpoxUntil)
        saved.set(key("shimmerpox"), *shimmerpoxUntil);
    else
        saved.remove(key("shimmerpox"));
}

void Companion::setHungryMinutes(double minutes) {
    hungryMinutes = minutes;
    computer().defaults.set(key("hungryMinutes"), hungryMinutes);
}

bool Companion::hasShimmerpox() const {
    return shimmerpoxUntil && *shimmerpoxUntil > date();
}

Mood Companion::mood() const {
    return moodFor({.feelsHeat = isOn(Setting::heat),
                    .thermalState = senses().thermalState(),
                    .charging = power().charging(),
                    .level = power().level()});
}

double Companion::hoursSincePetted() const {
    return std::min(since(lastPetted_) / anHour, 1.0);
}

PetStats Companion::stats() const {
    const GrowthRate rate = growthRate(stage);
    const int current = level();
    const int next = std::min(current + 1, maxLevel);
    const double begins = expForLevel(rate, current);
    const double ends = expForLevel(rate, next);

    Face face = Face::sigh;
    if (friendship >= gladFriendship)
        face = Face::joyous;
    else if (friendship >= contentFriendship)
        face = Face::happy;

    auto pox = PetStats::Shimmerpox::none;
    if (hasShimmerpox())
        pox = PetStats::Shimmerpox::infected;
    else if (shimmerpoxUntil)
        pox = PetStats::Shimmerpox::cured;

    return {
        .name = name(),
        .gender = gender,
        .nature = nature,
        .ability = ability(),
        .shiny = shiny && stage != Stage::egg,
        .coralis = isCoralian(),
        .shimmerpox = pox,
        .stage = stage,
        .level = current,
        .exp = exp,
        .nextLevelEXP = ends,
        .levelProgress = current == maxLevel ? 1.0 : (exp - begins) / std::max(ends - begins, 1.0),
        .friendship = friendship,
        .hunger = hunger,
        .energy = energy,
        .portrait = stage == Stage::egg ? Pixels::eggPortrait() : image(face),
        .canEvolve = canEvolve(),
        .evolveItem = evolveItem(),
        .known = known()};
}

Why Companion::why() const {
    return {.choice = brain_.choice,
            .at = brain_.decidedAt,
            .options = brain_.options,
            .needs = {{"Energy", energy},
                      {"Belly", 1 - hunger},
                      {"Friendship", friendship / mostFriendship},
                      {"Boredom", boredom},
                      {"Missing you", hoursSincePetted()}}};
}

const VoiceTable& Companion::voice() const {
    static const VoiceTable silent;
    return silent;
}

std::string Companion::evolutionName(Stage to, const std::optional<std::string>&) const {
    return displayName(to);
}

bool Companion::use(Item) {
    return false;
}

bool Companion::startDemo(const std::string&) {
    return false;
}

}  // namespace quibbits
