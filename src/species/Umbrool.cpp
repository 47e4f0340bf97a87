#include "species/Umbrool.h"

#include <algorithm>
#include <array>

#include "species/SheetNames.h"

namespace quibbits {

namespace {

constexpr int dusk = 19;  // hours of the day
constexpr int dawn = 6;
constexpr Seconds nightsApart = 36000;  // between two greetings of the night
constexpr Color glow{0.78, 0.3, 1, 1};

const VoiceTable& lines() {
    static const VoiceTable table{
        {Moment::curious, {"Hm? What's that? What's that?", "{cry}… who goes there?"}},
        {Moment::recognized, {"Oh, it's you! {cry} ♥", "{cry}! My favourite human!"}},
        {Moment::startled, {"Gah! Don't sneak up on a ghost!", "Hey! Scaring people is MY job!"}},
        {Moment::petted,
         {"{cry}… that tickles!", "Hehe, your hand went right through me!",
          "Pet me more and I won't haunt you… much."}},
        {Moment::pettedSleepy, {"Mm… even ghosts get sleepy…"}},
        {Moment::pickedUp, {"Hey! You can't hold a ghost! …Wheee!", "{cry}! I'm flying!"}},
        {Moment::pickedUpWorried, {"Careful! Ghosts bruise too, you know."}},
        {Moment::droppedHard, {"Ow… wait, ghosts don't feel pain. …Ow anyway."}},
        {Moment::dizzy, {"My head's spinning faster than my shadow…"}},
        {Moment::askBerry, {"My tummy's haunted… got a berry?", "Feed me, or I lick your screen."}},
        {Moment::ateFavourite, {"{cry}!! My favourite! ♥"}},
        {Moment::ate, {"Mmm! Berries taste better in the dark."}},
        {Moment::ateDisliked, {"Blech! You eat it!"}},
        {Moment::full, {"I'm stuffed… no more!"}},
        {Moment::woke, {"*yawn* Time to haunt!"}},
        {Moment::userBack, {"{cry}… you're back. I hid all your stuff. Just kidding!"}},
        {Moment::itemNear, {"Ooh, is that for me?", "Is that a berry? Gimme gimme!"}},
        {Moment::offline, {"The internet vanished… it wasn't me!"}},
        {Moment::online, {"It's back! Okay… maybe it WAS me."}},
        {Moment::hot, {"Too hot… I'm a cold-blooded ghost!"}},
        {Moment::deleted, {"Gone! Into the shadows!", "{cry}… swallowed whole!"}},
        {Moment::celebrate, {"{cry}! We did it!"}},
        {Moment::failed, {"{cry}… cursed. Definitely cursed."}},
        {Moment::done, {"Done! Now let's go prank someone."}},
        {Moment::hello, {"{cry}! Boo!"}},
        {Moment::playing, {"{cry}! Watch this!", "Can't catch me!"}},
    };
    return table;
}

}  // namespace

Umbrool::Umbrool(const World& world) : Companion("umbrool", world) {
    awaken();
}

AnimRoles Umbrool::animRoles() const {
    return {{"bask", {"Laying"}},        {"nap", {"EventSleep"}},
            {"flinch", {"Cringe"}},      {"wobble", {"LostBalance"}},
            {"glide", {"Float"}},        {"peek", {"Head"}},
            {"breathe", {"DeepBreath"}}, {"throw", {"MultiStrike", "Attack"}}};
}

std::string Umbrool::sheetName(Stage of, const std::optional<std::string>&, bool isShiny) const {
    std::string base = of == Stage::egg ? "wispul" : std::string(rawValue(of));
    return withShiny(std::move(base), of, isShiny);
}

Ability Umbrool::ability() const {
    return {"Levitate",
            "Floats instead of walking: it flies anywhere on your screen, not just along the "
            "floor, and never falls when you drop it."};
}

std::optional<Nibble> Umbrool::nibble() const {
    switch (stage()) {
        case Stage::wispul: return Nibble{"Lick", {26, 4}, 0.35};
        case Stage::gloamer: return Nibble{"Lick", {23, 6}, 0.29};
        default: return std::nullopt;
    }
}

const VoiceTable& Umbrool::voice() const {
    return lines();
}

std::string Umbrool::cry() const {
    switch (stage()) {
        case Stage::wispul: return "Fss…";
        case Stage::gloamer: return "Oohooh";
        default: return "Nyehee";
    }
}

std::optional<Item> Umbrool::evolveItem() const {
    if (stage() == Stage::gloamer) return Item::tetherLoop;
    return std::nullopt;
}

bool Umbrool::isOn(const char* key) const {
    return computer().defaults.onlyBoolean(key).value_or(true);
}

Anim Umbrool::front(const char* name, const Anim& otherwise) const {
    const auto seen = a().row(computer().resources, name, 0);
    return seen ? *seen : otherwise;
}

void Umbrool::fill(Mind& mind) {
    mind.ghost = true;
    mind.windowToHaunt =
        isOn("umbrool.phaseThroughWindows") && pet_.stage().frontWindow().has_value();
    mind.canLick = isOn("umbrool.licksScreen") && knows("Lick");
    mind.cursorLeftAlone = canSteal();
    mind.shadowTricks = isOn("umbrool.shadowTricks");
    mind.canPrank = isOn("umbrool.pranks");
    mind.ghostHour = isOn("umbrool.nightOwl") && isGhostHour();
    nightGlow(mind.ghostHour);
}

bool Umbrool::beginOwn(Intent intent, const Done& next) {
    struct Routine {
        Intent intent;
        void (Umbrool::*begin)(Done);
    };
    static constexpr std::array routines{
        Routine{Intent::fly, &Umbrool::fly},     Routine{Intent::phase, &Umbrool::phase},
        Routine{Intent::lick, &Umbrool::lick},   Routine{Intent::snatch, &Umbrool::snatch},
        Routine{Intent::clone, &Umbrool::clone}, Routine{Intent::shadowGag, &Umbrool::shadowGag},
        Routine{Intent::prank, &Umbrool::prank},
    };
    const auto routine = std::ranges::find(routines, intent, &Routine::intent);
    if (routine == routines.end()) return false;
    (this->*routine->begin)(next);
    return true;
}

bool Umbrool::isGhostHour() const {
    const auto told = computer().defaults.onlyBoolean("QuibGhostHour");
    if (told) return *told;
    return hour() >= dusk || hour() < dawn || computer().appearance.isDark();
}

void Umbrool::nightGlow(bool on) {
    if (std::exchange(glowing_, on) != on) {
        greetsNight_ = on;
        const Transaction slowly(pet_.node().engine(), {.duration = 1.5});
        pet_.sprite().change([&](LayerProperties& l) {
            l.shadow = {.color = glow, .radius = 2.5 * pet_.scale(), .opacity = on ? 0.95 : 0};
        });
    }
    if (!greetsNight_ || hasJustSaid()) return;
    greetsNight_ = false;
    const auto greeted = computer().defaults.onlyDate(key("ghostHourGreeted"));
    if (date() - greeted.value_or(Date::distantPast()) <= nightsApart) return;
    computer().defaults.set(key("ghostHourGreeted"), date());
    feelIfShown(Face::joyous, {.caption = "The night is mine… 👻", .seconds = 3.5});
}

void Umbrool::didLevelUp() {
    if (stage() == Stage::wispul && level() >= gloamerLevel) {
        offerEvolution({.to = Stage::gloamer}, false);
    }
}

bool Umbrool::use(Item item) {
    if (item != Item::tetherLoop) return false;
    if (!canEvolve()) {
        feelIfShown(Face::surprised, {.seconds = 2.5});
        return true;
    }
    pendingEvolution_ = {Stage::umbrool, std::nullopt};
    pet_.stage().showMenu();
    return true;
}

std::vector<std::string> Umbrool::playful() const {
    std::vector<std::string> names;
    for (const char* name : {"Twirl", "Rotate", "Double", "Tumble", "TumbleBack", "Trip"}) {
        if (a().anim(name)) names.emplace_back(name);
    }
    return names;
}

}  // namespace quibbits
