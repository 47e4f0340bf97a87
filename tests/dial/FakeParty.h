#pragma once
// A party of creatures that are only told of, on a simulated computer.

#include <deque>
#include <vector>

#include "party/PetStats.h"
#include "sim/SimulatedComputer.h"
#include "support/DrawnSheets.h"
#include "support/FlatText.h"

namespace quibbits {

struct FakeCreature {
    PetStats stats;
    bool isOut = false;
    std::vector<Point> toggles;
};

inline PetStats sparrelStats() {
    return {.name = "Sparrel",
            .gender = "♀",
            .stage = Stage::sparrel,
            .level = 23,
            .levelProgress = 0.459,
            .friendship = 127.5,
            .hunger = 0.25,
            .energy = 0.5,
            .evolveItem = Item::stormPebble};
}

inline PetStats eggStats() {
    return {.name = "Egg", .stage = Stage::egg};
}

class FakeParty {
public:
    explicit FakeParty(std::vector<FakeCreature> list) : creatures(list.begin(), list.end()) {}

    std::vector<PartyMember> members() {
        std::vector<PartyMember> all;
        for (FakeCreature& each : creatures) {
            all.push_back({.stats = [&each] { return each.stats; },
                           .portrait = [this] { return picture; },
                           .isOut = [&each] { return each.isOut; },
                           .toggle = [&each](Point at) { each.toggles.push_back(at); }});
        }
        return all;
    }

    std::deque<FakeCreature> creatures;
    Anim picture =
        Anim::fromStrip(Image::fromArgb(40, 20, std::vector<Argb>(800, 0xff884422u)), {1, 1});
};

/// A computer in virtual time that counts repaints.
class Desk {
public:
    DrawnSheets sheets = DrawnSheets::ofWalker();
    FlatText text;
    SimulatedComputer computer{{.painting = true}, sheets, text};
};

}  // namespace quibbits
