// Scenes on cue, for development and for films. The user default "QuibDemo" names one; nobody else
// starts them.

#include <algorithm>
#include <array>
#include <cmath>

#include "creature/Companion.h"

namespace quibbits {

namespace {

constexpr double hangHeight = 150;  // points of a drop
constexpr double nearFile = 300;    // points between two files of one visit
constexpr double fromTheEdge = 200;

}  // namespace

void Companion::runDemo(const std::string& word) {
    struct Scene {
        std::string_view word;
        void (Companion::*play)();
    };
    static constexpr std::array scenes{
        Scene{"dock", &Companion::dockDemo},       Scene{"files", &Companion::filesDemo},
        Scene{"drop", &Companion::dropDemo},       Scene{"break", &Companion::breakDemo},
        Scene{"feed", &Companion::feedDemo},       Scene{"eat", &Companion::eatDemo},
        Scene{"levelup", &Companion::levelUpDemo}, Scene{"play", &Companion::playDemo},
    };
    const auto scene = std::ranges::find(scenes, word, &Scene::word);
    if (scene == scenes.end()) return think();
    (this->*scene->play)();
}

/// Plays the steps undisturbed by the pointer, and goes on living.
void Companion::playScene(std::vector<Step> steps) {
    demoRunning_ = true;
    run(std::move(steps), [this] {
        demoRunning_ = false;
        think();
    });
}

/// Up onto the dock from the left, and down on its other side.
void Companion::dockDemo() {
    if (pet_.ground().size() != 3) return think();
    const Ground dock = pet_.ground()[1];
    pet_.drag({dock.span.lo - 160, 0});
    playScene({sitting(2), going({.to = {dock.span.lo + 120, dock.y}, .speed = 60}), sitting(1.5),
               going({.to = {dock.span.hi + 120, 0}, .speed = 90}), sitting(2)});
}

/// A visit to the nearest file of the desktop and to the highest of those about it.
void Companion::filesDemo() {
    constexpr Seconds iconsReadWithin = 3;
    pet_.stage().openSpots();  // has the desktop's icons read
    if (pet_.terrain().iconsKnown) return visitFiles();
    demoRunning_ = true;  // while it waits, too
    pet_.after(iconsReadWithin, [this] {
        demoRunning_ = false;
        visitFiles();
    });
}

void Companion::visitFiles() {
    pet_.stage().openSpots();
    std::vector<Ground> icons;
    std::ranges::copy_if(pet_.ground(), std::back_inserter(icons),
                         [](const Ground& row) { return !row.solid; });
    const auto reachable = canReach(icons);
    std::vector<Ground> files;
    for (std::size_t i = 0; i < icons.size(); ++i) {
        if (reachable[i]) files.push_back(icons[i]);
    }
    if (files.empty()) return think();

    const double x = pet_.position().x;
    const Ground first = *std::ranges::min_element(
        files, {}, [x](const Ground& file) { return std::abs(file.span.middle() - x) + file.y; });
    std::erase_if(files, [&](const Ground& file) {
        return std::abs(file.span.middle() - first.span.middle()) >= nearFile;
    });
    const Ground second = *std::ranges::max_element(files, {}, &Ground::y);
    const auto onto = [this](const Ground& file) {
        return going({.to = {file.span.middle(), file.y}, .speed = 70});
    };
    playScene({onto(first), sitting(2), onto(second), sitting(between(3, 6)),
               going({.to = {pet_.walkArea().hi - fromTheEdge, 0}, .speed = 70})});
}

/// Picked up and dropped again and again, without a hand.
void Companion::dropDemo() {
    demoRunning_ = true;
    const Point spot = summonSpot();
    pet_.drag(spot);
    dropAgain(spot);
}

void Companion::dropAgain(Point spot) {
    pickedUp();
    pet_.drag(spot + Vector{0, hangHeight});
    pet_.after(1, [this, spot] {
        dropped();
        pet_.runLoop().after(4, pet_.lifetime().guard([this, spot] { dropAgain(spot); }));
    });
}

void Companion::breakDemo() {
    pet_.after(1, [this] { suggestBreak(); });
}

void Companion::feedDemo() {
    needs_.growHungry(1);
    pet_.after(2, [this] { received(Item::blushum); });
    think();
}

void Companion::eatDemo() {
    needs_.growHungry(1);
    pet_.drag(summonSpot());
    think();
}

void Companion::levelUpDemo() {
    nearlyReach(std::min(level() + 1, maxLevel));
    gainEXP(0.1);
    think();
}

/// Experience a little short of a level.
void Companion::nearlyReach(int aim) {
    identity_.exp = expForLevel(growthRate(stage()), aim) - 0.1;
}

void Companion::playDemo() {
    pet_.drag(summonSpot());
    playOn();
}

void Companion::playOn() {
    play([this] { playOn(); });
}

}  // namespace quibbits
