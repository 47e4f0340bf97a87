// A ghost's scenes on cue.

#include <algorithm>
#include <array>

#include "species/Umbrool.h"

namespace quibbits {

bool Umbrool::startDemo(const std::string& word) {
    struct Scene {
        std::string_view word;
        void (Umbrool::*trick)(Done);
        Seconds pause;
    };
    static constexpr std::array scenes{
        Scene{"fly", &Umbrool::fly, 1},          Scene{"phase", &Umbrool::phase, 2},
        Scene{"lick", &Umbrool::lick, 2},        Scene{"clone", &Umbrool::clone, 2},
        Scene{"shadow", &Umbrool::shadowGag, 2}, Scene{"prank", &Umbrool::prank, 2},
        Scene{"boo", &Umbrool::booDemo, 1.5},
    };
    const auto scene = std::ranges::find(scenes, word, &Scene::word);
    if (scene != scenes.end()) {
        pet_.after(1, [this, scene = *scene] {
            repeat([this, scene](Done next) { (this->*scene.trick)(std::move(next)); },
                   scene.pause);
        });
        return true;
    }
    if (word == "snatch") {
        pet_.after(1, [this] { snatch([this] { think(); }); });
        return true;
    }
    if (word == "gloomorb") {
        pet_.drag({pet_.position().x, std::max(pet_.terrain().ceiling * 0.6, 300.0)});
        pet_.after(1, [this] { orbDemo(); });
        return true;
    }
    if (word == "evolve" && stage() == Stage::wispul) {
        pet_.runLoop().after(1, pet_.lifetime().guard([this] {
            nearlyReach(gloamerLevel);
            gainEXP(0.1);
        }));
    }
    if (word == "cord") pet_.after(2, [this] { received(Item::tetherLoop); });
    return false;
}

void Umbrool::repeat(Step trick, Seconds pause) {
    trick([this, trick, pause] {
        pet_.after(pause, [this, trick, pause] { repeat(trick, pause); });
    });
}

void Umbrool::booDemo(Done done) {
    beginHaunting();
    const Point pointer = habitat_.pointer();
    boo({pointer.x + 120, pointer.y - 60}, [this, done = std::move(done)] {
        haunting_.end();
        done();
    });
}

void Umbrool::orbDemo() {
    breakOff();
    gloomOrb(habitat_.pointer(), {}, [this] { pet_.after(3, [this] { orbDemo(); }); });
}

}  // namespace quibbits
