// What a creature is, how it is remembered, and what others may see of it.

#include <algorithm>
#include <utility>

#include "body/Pixels.h"
#include "creature/Companion.h"

namespace quibbits {

namespace {

constexpr double artScale = 3;  // points per sheet pixel
constexpr Seconds anHour = 3600;

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

void Companion::restore() {
    const UserDefaults& saved = computer().defaults;
    identity_ = Identity::load(saved, store_, random());
    needs_ = Needs::load(saved, store_);
    focusQuiet_ = saved.boolean("focus.on");
}

void Companion::awaken() {
    // A stage of the other line is as good as none.
    const auto own = quibbits::line(firstStage());
    if (std::ranges::find(own, stage()) == own.end()) identity_.stage = Stage::egg;
    pet_.hold(a().idle, 0);
    presence_.put(stage() != Stage::egg);
    {
        const Transaction still(world_.layers, Transaction::withoutActions());
        pet_.node().setHidden(!presence_.isOut());
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
    presence_.put(false);
    const Transaction still(world_.layers, Transaction::withoutActions());
    pet_.node().setHidden(true);
}

const Sheets& Companion::a() const {
    if (!sheets_)
        sheets_.emplace(computer().resources, sheetName(stage(), identity_.form, identity_.shiny),
                        animRoles());
    return *sheets_;
}

void Companion::start() {
    lastMood_ = mood();
    if (stage() == Stage::egg || !presence_.isOut()) return;
    const std::string word = computer().defaults.string("QuibDemo").value_or("");
    if (!startDemo(word)) runDemo(word);
}

void Companion::save() {
    needs_.save(computer().defaults, store_);
    identity_.save(computer().defaults, store_);
}

void Companion::saveHungryMinutes() {
    computer().defaults.set(key("hungryMinutes"), needs().hungryMinutes);
}

bool Companion::hasShimmerpox() const {
    return identity_.shimmerpoxUntil && *identity_.shimmerpoxUntil > date();
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
    const GrowthRate rate = growthRate(stage());
    const int current = level();
    const int next = std::min(current + 1, maxLevel);
    const double begins = expForLevel(rate, current);
    const double ends = expForLevel(rate, next);

    Face face = Face::sigh;
    if (needs().friendship >= gladFriendship)
        face = Face::joyous;
    else if (needs().friendship >= contentFriendship)
        face = Face::happy;

    auto pox = PetStats::Shimmerpox::none;
    if (hasShimmerpox())
        pox = PetStats::Shimmerpox::infected;
    else if (identity_.shimmerpoxUntil)
        pox = PetStats::Shimmerpox::cured;

    return {.name = name(),
            .gender = identity_.gender,
            .nature = identity_.nature,
            .ability = ability(),
            .shiny = identity_.shiny && stage() != Stage::egg,
            .coralis = isCoralian(),
            .shimmerpox = pox,
            .stage = stage(),
            .level = current,
            .exp = identity_.exp,
            .nextLevelEXP = ends,
            .levelProgress =
                current == maxLevel ? 1.0 : (identity_.exp - begins) / std::max(ends - begins, 1.0),
            .friendship = needs().friendship,
            .hunger = needs().hunger,
            .energy = needs().energy,
            .portrait = stage() == Stage::egg ? Pixels::eggPortrait() : image(face),
            .canEvolve = canEvolve(),
            .evolveItem = evolveItem(),
            .known = known()};
}

Why Companion::why() const {
    return {.choice = brain_.choice,
            .at = brain_.decidedAt,
            .options = brain_.options,
            .needs = {{"Energy", needs().energy},
                      {"Belly", needs().belly()},
                      {"Friendship", needs().friendship / mostFriendship},
                      {"Boredom", needs().boredom},
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
