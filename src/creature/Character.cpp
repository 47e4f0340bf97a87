#include "creature/Character.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "body/Pixels.h"

namespace quibbits {

namespace {

constexpr double artScale = 3;  // points per sheet pixel

constexpr Seconds reading = 1;  // of words that stand there whole

// Friendship from which the portrait in lists looks content, and glad.
constexpr double contentFriendship = 70;
constexpr double gladFriendship = 200;

void logFailure(const NotificationOutcome& outcome) {
    using Kind = NotificationOutcome::Kind;
    if (outcome.kind == Kind::shown) return;
    const char* what =
        outcome.kind == Kind::notAllowed ? "notifications not allowed" : "notification failed";
    std::fprintf(stderr, "Quibbits: %s (%s)\n", what, outcome.error.c_str());
}

}  // namespace

Character::Character(std::string store, const World& world)
    : pet_(world.layers, world.computer.text, artScale), store_(std::move(store)), world_(world) {
    const UserDefaults& saved = computer().defaults;
    identity_ = Identity::load(saved, store_, random());
    needs_ = Needs::load(saved, store_);
    focusQuiet_ = saved.boolean("focus.on");
}

Character::~Character() = default;

void Character::embody() {
    // A stage of the other line is as good as none.
    const auto own = quibbits::line(firstStage());
    if (std::ranges::find(own, stage()) == own.end()) identity_.stage = Stage::egg;
    pet_.hold(a().idle, 0);
    presence_.put(stage() != Stage::egg);
    setHidden(!presence_.isOut());
}

void Character::become(Identity identity, std::optional<Sheets> sheets) {
    identity_ = std::move(identity);
    sheets_ = std::move(sheets);
}

void Character::setHidden(bool hidden) {
    const Transaction still(world_.layers, Transaction::withoutActions());
    pet_.node().setHidden(hidden);
}

std::string Character::key(std::string_view suffix) const {
    return store_ + "." + std::string(suffix);
}

const Sheets& Character::a() const {
    if (!sheets_)
        sheets_.emplace(computer().resources, sheetName(stage(), identity_.form, identity_.shiny),
                        animRoles());
    return *sheets_;
}

void Character::save() {
    needs_.save(computer().defaults, store_);
    identity_.save(computer().defaults, store_);
}

bool Character::hasShimmerpox() const {
    return identity_.shimmerpoxUntil && *identity_.shimmerpoxUntil > date();
}

Mood Character::mood() const {
    return moodFor({.feelsHeat = isOn(Setting::heat),
                    .thermalState = senses().thermalState(),
                    .charging = power().charging(),
                    .level = power().level()});
}

PetStats Character::stats() const {
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

const VoiceTable& Character::voice() const {
    static const VoiceTable silent;
    return silent;
}

std::string Character::evolutionName(Stage to, const std::optional<std::string>&) const {
    return displayName(to);
}

std::optional<std::string> Character::line(Moment moment) const {
    return pickLine(voice(), moment, {.name = name(), .cry = cry()}, random());
}

Image Character::image(Face face) const {
    return computer().resources.image(sheetName(stage(), identity_.form, identity_.shiny) +
                                      "-face-" + std::string(rawValue(face)));
}

void Character::feel(Face face, const Bubble& bubble) {
    pet_.showFace({.image = image(face),
                   .caption = bubble.caption,
                   .speaker = bubble.speaker,
                   .thought = bubble.thought,
                   .seconds = bubble.seconds,
                   .tall = a().idle.height});
    if (bubble.caption) readAt_ = now() + Pet::typingTime(*bubble.caption) + reading;
    uttered({face, bubble.caption, bubble.speaker, bubble.seconds});
    hasJustSaid_ = hasJustSaid_ || bubble.caption;
    if (std::exchange(hasJustShown_, true)) return;
    pet_.runLoop().post(pet_.lifetime().guard([this] { hasJustShown_ = hasJustSaid_ = false; }));
}

void Character::feelIfShown(Face face, const Bubble& bubble) {
    if (isOn(Setting::faces)) feel(face, bubble);
}

void Character::muse(Face face, const Bubble& bubble) {
    if (!hasJustShown_ && now() >= readAt_) feelIfShown(face, bubble);
}

void Character::speak(const Speech& speech) {
    const auto words = isOn(Setting::chatter) ? line(speech.moment) : std::nullopt;
    if (words) {
        feel(speech.face, {.caption = words,
                           .speaker = name(),
                           .thought = speech.thought,
                           .seconds = speech.spoken});
    } else if (speech.otherwise || isOn(Setting::faces)) {
        feel(speech.face,
             {.caption = speech.otherwise, .thought = speech.thought, .seconds = speech.silent});
    }
}

void Character::notify(const Notice& notice) {
    if (notice.category != "zap" && !isOn(Setting::notifications)) return;
    computer().notifications.send({.identifier = key(notice.suffix),
                                   .title = notice.title,
                                   .body = notice.body,
                                   .category = notice.category,
                                   .sound = notice.sound,
                                   .pet = store_,
                                   .paths = notice.paths},
                                  logFailure);
}

}  // namespace quibbits
