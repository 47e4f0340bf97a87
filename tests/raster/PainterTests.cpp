#include <gtest/gtest.h>

#include "layers/LayerEngine.h"
#include "layers/ManualRunLoop.h"
#include "raster/Painter.h"

namespace quibbits {
namespace {

constexpr Argb red = 0xffff0000;
constexpr Argb green = 0xff00ff00;
constexpr Argb blue = 0xff0000ff;
constexpr Argb white = 0xffffffff;

class Painting : public testing::Test {
protected:
    ManualRunLoop loop;
    LayerEngine engine{loop};
    LayerTree tree{engine};
    Painter painter;
    std::vector<Argb> pixels;
    int width = 0;
    int height = 0;

    void surface(int w, int h, double scale = 1) {
        width = static_cast<int>(w * scale);
        height = static_cast<int>(h * scale);
        tree.setSurface({static_cast<double>(w), static_cast<double>(h)}, scale);
        pixels.assign(static_cast<std::size_t>(width * height), 0x12345678);
    }
    LayerRef add(LayerProperties values) {
        auto layer = engine.makeLayer(std::move(values));
        tree.root().addSublayer(layer);
        return layer;
    }
    void paint() {
        tree.damageAll();
        for (const auto& dirty : tree.nextFrame(loop.now())) {
            painter.paint(tree, dirty, {pixels.data(), width, {0, 0, width, height}});
        }
    }
    Argb at(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }
    static int alpha(Argb pixel) { return static_cast<int>(pixel >> 24); }
    int inked(int left, int top, int right, int bottom) const {
        int count = 0;
        for (int y = top; y < bottom; ++y) {
            for (int x = left; x < right; ++x) count += at(x, y) != 0;
        }
        return count;
    }
    /// A row of the picture, one letter a pixel.
    std::string row(int y) const {
        std::string letters;
        for (int x = 0; x < width; ++x) {
            const Argb p = at(x, y);
            letters += p == red     ? 'r'
                       : p == green ? 'g'
                       : p == blue  ? 'b'
                       : p == white ? 'w'
                       : p == 0     ? '.'
                                    : '?';
        }
        return letters;
    }
    /// Two by two pixels: red and green above blue and nothing.
    static Picture quarters() {
        return {Image::fromPalette(2, 2, {0, 1, 2, 3}, {red, green, blue, 0}), Filter::nearest};
    }
};

struct SpriteCase {
    const char* name;
    Transform transform;
    Rect contents;
    std::vector<std::string> rows;
};

TEST_F(Painting, SpritesComeOutExactToThePixel) {
    const SpriteCase cases[] = {
        {"plain", {}, {0, 0, 1, 1}, {"......", ".rrgg.", ".rrgg.", ".bb...", ".bb..."}},
        {"mirrored", Transform::mirrored(), {0, 0, 1, 1}, {"......", ".ggrr.", ".ggrr.", "...bb."}},
        {"upside down",
         Transform::scaled(1, -1),
         {0, 0, 1, 1},
         {"......", ".bb...", ".bb...", ".rrgg."}},
        {"lower left quarter", {}, {0, 0.5, 0.5, 0.5}, {"......", ".bbbb.", ".bbbb.", ".bbbb."}},
        {"half as high",
         Transform::scaled(1, 0.5),
         {0, 0, 1, 1},
         {"......", "......", ".rrgg.", ".bb..."}},
        {"moved by less than half a pixel",
         {.translation = {0.4, -0.4}},
         {0, 0, 1, 1},
         {"......", ".rrgg."}},
    };
    surface(6, 6);
    const auto layer = add({.bounds = {0, 0, 4, 4}, .position = {3, 3}, .content = quarters()});
    for (const auto& row : cases) {
        layer->change([&](LayerProperties& l) {
            l.transform = row.transform;
            l.contentsRect = row.contents;
        });
        paint();
        for (std::size_t y = 0; y < row.rows.size(); ++y) {
            EXPECT_EQ(this->row(static_cast<int>(y)), row.rows[y]) << row.name << ", row " << y;
        }
    }
}

TEST_F(Painting, AFactorThatIsNotWholeGivesAllColumnsTheSameWeight) {
    surface(4, 2, 1.5);
    std::vector<Argb> stripes;
    for (int i = 0; i < 4; ++i) stripes.push_back(i % 2 ? 0xff000000 : white);
    add({.bounds = {0, 0, 4, 1},
         .position = {2, 1},
         .content = Picture{Image::fromArgb(4, 1, stripes), Filter::nearest}});
    paint();
    // Three device pixels show two stripes: a whole one, half of each, a whole one.
    const std::vector<Argb> expected{white, 0xff808080, 0xff000000, white, 0xff808080, 0xff000000};
    for (int x = 0; x < 6; ++x) EXPECT_EQ(at(x, 1), expected[static_cast<std::size_t>(x)]) << x;
}

TEST_F(Painting, OpacityAndSeeThroughPixelsBlend) {
    surface(4, 1);
    add({.bounds = {0, 0, 4, 1}, .position = {2, 0.5}, .background = Color::white()});
    const auto half =
        add({.bounds = {0, 0, 2, 1},
             .position = {1, 0.5},
             .opacity = 0.5,
             .content = Picture{Image::fromArgb(1, 1, {0xff000000}), Filter::nearest}});
    add({.bounds = {0, 0, 1, 1},
         .position = {3.5, 0.5},
         .content = Picture{Image::fromArgb(1, 1, {0x80800000}), Filter::nearest}});
    paint();
    EXPECT_EQ(at(0, 0), 0xff7f7f7f);
    EXPECT_EQ(at(2, 0), white);
    EXPECT_EQ(at(3, 0), 0xffff7f7f);
}

TEST_F(Painting, AGroupFadesAsOne) {
    surface(4, 1);
    const auto group = add({.bounds = {0, 0, 4, 1}, .position = {2, 0.5}, .opacity = 0.5});
    for (const Color color : {Color::rgb(0xff0000), Color::rgb(0x0000ff)}) {
        group->addSublayer(
            engine.makeLayer({.bounds = {0, 0, 4, 1}, .position = {2, 0.5}, .background = color}));
    }
    paint();
    EXPECT_EQ(at(1, 0), 0x80000080) << "nothing of the lower one shines through";
}

TEST_F(Painting, SublayersStandOverTheirParentAndItsBorderOverAll) {
    surface(8, 8);
    const auto box = add({.bounds = {0, 0, 6, 6},
                          .position = {4, 4},
                          .background = Color::rgb(0xff0000),
                          .borderWidth = 1,
                          .borderColor = Color::white()});
    box->addSublayer(engine.makeLayer(
        {.bounds = {0, 0, 4, 2}, .position = {2, 3}, .background = Color::rgb(0x0000ff)}));
    paint();
    EXPECT_EQ(row(0), "........");
    EXPECT_EQ(row(1), ".wwwwww.");
    EXPECT_EQ(row(2), ".wrrrrw.");
    EXPECT_EQ(row(3), ".wbbbrw.");
    EXPECT_EQ(row(7), "........");
}

TEST_F(Painting, BoundsMaskWithTheirRoundCorners) {
    surface(20, 20);
    const auto box = add({.bounds = {0, 0, 10, 10}, .position = {10, 10}, .masksToBounds = true});
    box->addSublayer(engine.makeLayer(
        {.bounds = {0, 0, 40, 40}, .position = {5, 5}, .background = Color::white()}));
    paint();
    EXPECT_EQ(inked(0, 0, 20, 20), 100);
    EXPECT_EQ(at(5, 5), white);
    box->change([](LayerProperties& l) { l.cornerRadius = 5; });
    paint();
    EXPECT_EQ(at(5, 5), 0u);
    EXPECT_EQ(at(10, 10), white);
    EXPECT_GT(alpha(at(10, 5)), 200);
}

TEST_F(Painting, AMaskKeepsWhatItsOpacityCovers) {
    surface(6, 6);
    const auto layer =
        add({.bounds = {0, 0, 4, 4}, .position = {3, 3}, .background = Color::white()});
    layer->setMask(
        engine.makeLayer({.bounds = {0, 0, 4, 4}, .position = {2, 2}, .content = quarters()}));
    paint();
    EXPECT_EQ(row(1), ".wwww.");
    EXPECT_EQ(row(2), ".wwww.");
    EXPECT_EQ(row(3), ".ww...");
    layer->setMask(nullptr);
    paint();
    EXPECT_EQ(row(3), ".wwww.");
}

TEST_F(Painting, ATurnedSpriteKeepsItsColours) {
    surface(8, 8);
    add({.bounds = {0, 0, 4, 4},
         .position = {4, 4},
         .transform = {.rotation = 3.14159265358979 / 2},
         .content = quarters()});
    paint();
    EXPECT_EQ(row(2), "..gg....") << "a quarter turn to the left";
    EXPECT_EQ(row(5), "..rrbb..");
}

TEST_F(Painting, AShadowIsSoftAndLiesBelow) {
    surface(60, 60);
    const auto layer = add({.bounds = {0, 0, 10, 10},
                            .position = {30, 30},
                            .background = Color::white(),
                            .shadow = {.color = Color::rgb(0xff0000), .radius = 4, .opacity = 1}});
    paint();
    EXPECT_EQ(at(30, 30), white);
    const int near = alpha(at(23, 30));
    const int far = alpha(at(18, 30));
    EXPECT_GT(near, far);
    EXPECT_GT(far, 0);
    EXPECT_EQ(at(23, 30) & 0xffff, 0u) << "of its own colour";
    EXPECT_EQ(at(8, 30), 0u);
    EXPECT_EQ(at(23, 30), at(36, 30)) << "the same on both sides";
    layer->change([](LayerProperties& l) {
        l.shadow.radius = 0;
        l.shadow.offset = {0, -8};
    });
    paint();
    EXPECT_EQ(at(30, 42), red);
    EXPECT_EQ(at(30, 44), 0u);
}

TEST_F(Painting, ShapesFillStrokeAndShowPartOfTheirStroke) {
    surface(40, 10);
    const auto line = [&](Shape shape) {
        shape.path = Path::line({0, 5}, {40, 5});
        shape.fill = Color::clear();
        shape.stroke = Color::white();
        return shape;
    };
    const auto layer = add({.content = line({.lineWidth = 2})});
    paint();
    EXPECT_EQ(inked(0, 0, 40, 10), 80);
    layer->setContent(line({.lineWidth = 2, .strokeStart = 0.25, .strokeEnd = 0.5}));
    const Transaction still(engine, Transaction::withoutActions());
    paint();
    EXPECT_EQ(inked(0, 0, 40, 10), 20);
    EXPECT_EQ(at(10, 4), white);
    EXPECT_EQ(at(20, 4), 0u);
    layer->setContent(line({.lineWidth = 2, .dash = {3, 5}}));
    paint();
    EXPECT_EQ(inked(0, 0, 40, 10), 30);
    layer->setContent(Shape{.path = Path::ellipse({10, 0, 10, 10}), .fill = Color::rgb(0x00ff00)});
    paint();
    EXPECT_NEAR(inked(0, 0, 40, 10), 79, 14);
    EXPECT_EQ(at(15, 5), green);
}

TEST_F(Painting, APictureShrunkToNothingLeavesNothing) {
    surface(12, 12);
    for (const Transform& transform :
         {Transform::scaled(0, 0), Transform::scaled(0, 1), Transform::scaled(1, 0),
          Transform{.scaleX = 0, .rotation = 0.7}}) {
        for (const Filter filter : {Filter::nearest, Filter::smooth}) {
            Picture picture = quarters();
            picture.magnification = filter;
            tree.root().removeAllSublayers();
            add({.bounds = {0, 0, 4, 4},
                 .position = {2, 10},
                 .transform = transform,
                 .content = picture});
            paint();
            EXPECT_EQ(inked(0, 0, 12, 12), 0) << transform.scaleX << " " << transform.scaleY;
        }
    }
}

TEST_F(Painting, AnEmitterHasABoxAndAShadowLikeAnyOther) {
    surface(12, 12);
    const EmitterCell cell{
        .image = Image::fromArgb(2, 2, {red, red, red, red}), .birthRate = 1, .lifetime = 10};
    const auto layer = add({.bounds = {0, 0, 6, 4},
                            .position = {6, 6},
                            .content = Emitter{.cells = {cell}},
                            .background = Color::rgb(0x0000ff)});
    paint();
    EXPECT_EQ(row(3), "............");
    EXPECT_EQ(row(4), "...bbbbbb...");
    EXPECT_EQ(row(6), "...bbbbbb...") << "particles start where the layer's origin is";
    EXPECT_EQ(row(7), "..rrbbbbb...");
    EXPECT_EQ(row(8), "..rr........");
    layer->change([](auto& l) {
        l.shadow = {.color = Color::rgb(0x00ff00), .offset = {3, 0}, .radius = 0, .opacity = 1};
    });
    paint();
    EXPECT_EQ(row(4), "...bbbbbbggg");
    EXPECT_EQ(row(7), "..rrbbbbbggg") << "a shadow takes no particle away";
    EXPECT_EQ(row(8), "..rr........");
}

TEST_F(Painting, GradientsRunUpwardsAndOutwards) {
    surface(11, 11);
    Gradient gradient{.colors = {Color::black(), Color::white()}};
    const auto layer = add({.bounds = {0, 0, 11, 11}, .position = {5.5, 5.5}, .content = gradient});
    paint();
    EXPECT_LT(at(5, 10) & 0xff, 20u);
    EXPECT_GT(at(5, 0) & 0xff, 235u);
    EXPECT_NEAR(at(5, 5) & 0xff, 128, 3);
    gradient.kind = Gradient::Kind::radial;
    gradient.start = {0.5, 0.5};
    gradient.end = {1, 1};
    layer->setContent(gradient);
    paint();
    EXPECT_LT(at(5, 5) & 0xff, 10u);
    EXPECT_EQ(at(0, 5), at(10, 5));
    EXPECT_NEAR(at(8, 5) & 0xff, 139, 6);
}

TEST_F(Painting, OnlyTheDirtyPartOfTheBufferIsTouched) {
    surface(10, 10);
    add({.bounds = {0, 0, 10, 10}, .position = {5, 5}, .background = Color::white()});
    tree.nextFrame(loop.now());
    painter.paint(tree, {2, 3, 4, 5}, {pixels.data(), width, {0, 0, 10, 6}});
    int touched = 0;
    for (const Argb p : pixels) touched += p != 0x12345678;
    EXPECT_EQ(touched, 4 * 3);
    EXPECT_EQ(at(2, 3), white);
    EXPECT_EQ(at(5, 5), white);
}

class TextPainting : public Painting {
protected:
    TextRuler ruler;
    static StyledText say(std::string words) {
        return {.runs = {{std::move(words), Color::white()}}, .fontSize = 12};
    }
};

TEST_F(TextPainting, WhatIsDrawnFitsWhatWasMeasured) {
    for (const double scale : {1.0, 1.25, 2.0}) {
        for (const char* words :
             {"Wait!", "A rather long sentence about berries and clouds",
              "Wherearethespaces?Therearenonehereatallithink", "\u00e9\u4e2d\U0001f600 ok"}) {
            const Size size = ruler.measure(say(words), {120, 200});
            EXPECT_LE(size.width, 120);
            surface(160, 120, scale);
            tree.root().removeAllSublayers();
            add({.bounds = {0, 0, size.width, size.height},
                 .position = {20, 20},
                 .anchorPoint = {0, 0},
                 .content = Text{.text = say(words), .wrapped = true}});
            paint();
            const int left = static_cast<int>(19 * scale) - 1;
            const int right = static_cast<int>((21 + size.width) * scale) + 1;
            const int top = static_cast<int>((99 - size.height) * scale) - 1;
            const int bottom = static_cast<int>(101 * scale) + 1;
            const int all = inked(0, 0, width, height);
            EXPECT_GT(all, 30) << words;
            EXPECT_EQ(inked(left, top, right, bottom), all) << words << " at " << scale;
        }
    }
}

TEST_F(TextPainting, LinesWrapAtTheWidthAndNoSooner) {
    const Size one = ruler.measure(say("Hello there"), {300, 300});
    const Size same = ruler.measure(say("Hello there"), {one.width, 300});
    const Size two = ruler.measure(say("Hello there"), {one.width - 2, 300});
    EXPECT_EQ(one, same);
    EXPECT_NEAR(two.height, one.height * 2, 1);
    EXPECT_EQ(ruler.measure(say("Hello there"), {40, 20}).height, 20);
    auto bold = say("Hello there");
    bold.weight = FontWeight::bold;
    EXPECT_GT(ruler.measure(bold, {300, 300}).width, one.width);
}

TEST_F(TextPainting, AlignsAndCutsOneLine) {
    surface(100, 20);
    Text text{.text = say("ii"), .alignment = TextAlignment::right};
    const auto layer = add({.bounds = {0, 0, 100, 20}, .position = {50, 10}, .content = text});
    paint();
    EXPECT_EQ(inked(0, 0, 50, 20), 0);
    EXPECT_GT(inked(85, 0, 100, 20), 0);
    text.alignment = TextAlignment::center;
    layer->setContent(text);
    paint();
    EXPECT_GT(inked(40, 0, 60, 20), 0);
    EXPECT_EQ(inked(0, 0, 40, 20) + inked(60, 0, 100, 20), 0);
    text = {.text = say("A name far too long for so short a line"), .truncated = true};
    layer->setContent(text);
    paint();
    EXPECT_GT(inked(60, 0, 100, 20), 0);
    EXPECT_GT(inked(0, 0, 100, 12), 0);
}

}  // namespace
}  // namespace quibbits
