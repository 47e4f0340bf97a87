#pragma once
// A body on a loop in virtual time, with animations made of plain strips.

#include <gtest/gtest.h>

#include <memory>

#include "body/Pet.h"
#include "sim/VirtualRunLoop.h"
#include "support/FlatText.h"

namespace quibbits {

/// Frames of 20 × 20 pixels, opaque but for the given empty rows at the bottom.
inline Anim strip(const std::vector<int>& ticks, int emptyRows = 0) {
    constexpr int side = 20;
    const int width = side * std::max(static_cast<int>(ticks.size()), 1);
    std::vector<Argb> pixels(static_cast<std::size_t>(width * side));
    std::fill_n(pixels.begin(), width * (side - emptyRows), 0xff336699u);
    return Anim::fromStrip(Image::fromArgb(width, side, std::move(pixels)), ticks);
}

class PetOnALoop : public testing::Test {
protected:
    PetOnALoop() {
        pet->setTerrain({.ground = {{{0, 1000}, 0, true}}, .walkArea = {0, 1000}});
        pet->drag({200, 0});
        pet->forgetSwings();
    }
    /// The stage has become another in some respect.
    void change(const std::function<void(Terrain&)>& what) {
        Terrain terrain = pet->terrain();
        what(terrain);
        pet->setTerrain(std::move(terrain));
    }
    void advance(Seconds seconds) { loop.advance(seconds); }
    Done note() {
        return [this] { doneAt.push_back(loop.now()); };
    }
    Rect frameShown() const { return pet->sprite().presentation().contentsRect; }
    Image imageShown() const { return std::get<Picture>(pet->sprite().model().content).image; }
    const Layer& part(std::size_t index) const { return *parts.at(index); }
    /// What was added to the body's own four layers.
    std::size_t extras() const { return pet->node().sublayers().size() - 4; }
    /// The last of that, over the other layers or between the sprite and them.
    const Layer& extra() const {
        const auto& all = pet->node().sublayers();
        return all.back() == parts.back() ? *all.at(1) : *all.back();
    }
    double heightOf(Instant at) const { return pet->node().presentation(at).position.y; }

    VirtualRunLoop loop{Date{0}};
    LayerEngine engine{loop};
    FlatText text;
    std::unique_ptr<Pet> pet = std::make_unique<Pet>(engine, text, 3);
    const std::vector<LayerRef> parts = pet->node().sublayers();  // sprite, bubble, panel, thought
    std::vector<Instant> doneAt;

    const Anim walking = strip({6, 6});
    const Anim hopping = strip({6, 6, 6});
    const Anim leaping = strip({6, 6, 6, 6});
};

}  // namespace quibbits
