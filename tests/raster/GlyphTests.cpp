// Characters that no installed font has, on a machine whose only fonts are DejaVu's.

#include <gtest/gtest.h>

#include "layers/LayerEngine.h"
#include "layers/ManualRunLoop.h"
#include "raster/Painter.h"

namespace quibbits {
namespace {

constexpr const char* ghost = "\U0001f47b";

class Glyphs : public testing::Test {
protected:
    static StyledText say(const std::string& words, FontWeight weight = FontWeight::regular) {
        return {.runs = {{words, Color::white()}}, .fontSize = 12, .weight = weight};
    }
    /// The text as it is painted in one line.
    std::vector<Argb> painted(const StyledText& text) {
        constexpr int width = 300, height = 30;
        ManualRunLoop loop;
        LayerEngine engine(loop);
        LayerTree tree(engine);
        tree.setSurface({width, height}, 1);
        auto layer = engine.makeLayer({.bounds = {0, 0, width, height},
                                       .position = {width / 2.0, height / 2.0},
                                       .content = Text{.text = text}});
        tree.root().addSublayer(layer);
        std::vector<Argb> pixels(std::size_t{width} * height);
        for (const auto& dirty : tree.nextFrame(loop.now())) {
            painter.paint(tree, dirty, {pixels.data(), width, {0, 0, width, height}});
        }
        return pixels;
    }
    void expectSame(const StyledText& text, const StyledText& other, const std::string& what) {
        EXPECT_EQ(ruler.measure(text, {300, 300}), ruler.measure(other, {300, 300})) << what;
        EXPECT_EQ(painted(text), painted(other)) << what;
    }

    TextRuler ruler;
    Painter painter;
};

TEST_F(Glyphs, ThatNoFontHasAreLeftOutOfWhatIsMeasuredAndDrawn) {
    const std::string missing = ghost;
    struct Case {
        std::string words, left;
    };
    for (const auto& [words, left] : {
             Case{"Better? " + missing, "Better?"},
             Case{missing + " Boo!", "Boo!"},
             Case{"Peek" + missing + "aboo", "Peekaboo"},
             Case{"one " + missing + " two", "one two"},
             Case{"one " + missing + missing + " two", "one two"},
             Case{"coloured " + missing + "\ufe0f!", "coloured !"},
             Case{"joined " + missing + "\u200d\u2640\ufe0f.", "joined ."},
             Case{"accented " + missing + "\u0301.", "accented ."},
             Case{missing, ""},
         }) {
        for (const auto weight : {FontWeight::regular, FontWeight::bold}) {
            expectSame(say(words, weight), say(left, weight), words);
        }
    }
}

TEST_F(Glyphs, ThatAFontHasStayWithAllThatBelongsToThem) {
    for (const char* words : {"Oh! It's you! ♥", "♀ ♂ ★ … ▼ ×", "e\u0301", "\u2640\ufe0f"}) {
        const auto all = painted(say(words));
        EXPECT_GT(std::ranges::count_if(all, [](Argb p) { return p != 0; }), 8) << words;
    }
    expectSame(say("e\u0301"), say("\u00e9"), "an accent of its own");
    expectSame(say("a \u2665"), say("a \u2665\U0001f3fd"), "a shade that no font has");
}

TEST_F(Glyphs, ThatAreMissingTakeNoColourFromTheOthers) {
    const Color red = Color::rgb(0xff0000), blue = Color::rgb(0x0000ff);
    expectSame(
        {.runs = {{std::string(ghost) + "Mizzle", red}, {": hi " + std::string(ghost), blue}},
         .fontSize = 12},
        {.runs = {{"Mizzle", red}, {": hi", blue}}, .fontSize = 12}, "runs");
}

}  // namespace
}  // namespace quibbits
