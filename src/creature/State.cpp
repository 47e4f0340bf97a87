// How a creature is joined to its body, set going, and asked for its reasons.

#include <algorithm>
#include <utility>

#include "body/Pixels.h"
#include "creature/Companion.h"

namespace quibbits {

namespace {

constexpr Seconds anHour = 3600;

}  // namespace

Companion::Companion(std::string store, const World& world)
    : Character(std::move(store), world), lastThought_(mark()), lastPetted_(lastThought_) {
    wasCharging_ = power().charging();
}

Companion::~Companion() = default;

void Companion::awaken() {
    embody();
    refreshMoves();
    joinBody();
}

void Companion::joinBody() {
    // The body is a part of the creature, so these may name it plainly.
    pet_.listen({
        .onHover = [this](Point at) { cursorNearby(at); },
        .onCursor = [this](Point at) { watch(at); },
        .onPickUp = [this] { pickedUp(); },
        .onDrop = [this] { dropped(); },
        .takesItems = [this] { return presence_.isReady(); },
        .takesFiles = [this] { return canAttack(); },
        .onItem = [this](Item item) { received(item); },
        .onItemNear = [this](Point at) { itemNear(at); },
        .onZap = [this](const std::vector<std::string>& paths) { zap(paths); },
        .onMenu = [this] { return menu(); },
        // The ground may change while the creature thinks; it looks down afterwards.
        .onGroundChanged =
            [this] { pet_.runLoop().post(pet_.lifetime().guard([this] { groundChanged(); })); },
        .onMoved = [this] { return findFeet(); },
    });
    subscriptions_.push_back(computer().workspace.activated.subscribe([this] { glance(); }));
}

void Companion::stayIn() {
    presence_.put(false);
    setHidden(true);
}

void Companion::start() {
    lastMood_ = mood();
    if (stage() == Stage::egg || !presence_.isOut()) return;
    const std::string word = computer().defaults.string("QuibDemo").value_or("");
    if (!startDemo(word)) runDemo(word);
}

void Companion::saveHungryMinutes() {
    computer().defaults.set(key("hungryMinutes"), needs().hungryMinutes);
}

double Companion::hoursSincePetted() const {
    return std::min(since(lastPetted_) / anHour, 1.0);
}

void Companion::uttered(const Utterance& utterance) {
    if (listener_.onUtterance) listener_.onUtterance(*this, utterance);
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

bool Companion::use(Item) {
    return false;
}

bool Companion::startDemo(const std::string&) {
    return false;
}

}  // namespace quibbits
