#include <gtest/gtest.h>

#include <array>
#include <random>

#include "layers/LayerEngine.h"
#include "layers/ManualRunLoop.h"
#include "platform/Random.h"
#include "raster/Painter.h"

namespace quibbits {
namespace {

constexpr int width = 160;
constexpr int height = 120;

/// A tree that grows, changes and moves at random.
class Wilderness {
public:
    Wilderness(std::uint64_t seed, double scale) : random_(seed), scale_(scale) {
        tree.setSurface({width / scale, height / scale}, scale);
    }

    ManualRunLoop loop;
    LayerEngine engine{loop};
    LayerTree tree{engine};

    void live() {
        const Transaction open(engine,
                               {.actions = random_.coin() ? Actions::enabled : Actions::disabled});
        for (std::size_t i = random_.index(4); i > 0; --i) act();
        loop.runUntil(loop.now() + random_.uniform(0, 0.2));
    }

private:
    double number(double a, double b) { return random_.uniform(a, b); }
    Point point() { return {number(-20, width / scale_ + 20), number(-20, height / scale_ + 20)}; }
    Color color() { return {number(0, 1), number(0, 1), number(0, 1), number(-0.3, 1.3)}; }

    LayerRef any() { return all_.empty() ? nullptr : all_[random_.index(all_.size())]; }

    Image image() {
        const int w = static_cast<int>(2 + random_.index(9));
        const int h = static_cast<int>(2 + random_.index(9));
        std::vector<Argb> pixels;
        for (int i = 0; i < w * h; ++i) {
            const Argb alpha = random_.coin() ? 255 : static_cast<Argb>(random_.index(256));
            pixels.push_back(alpha << 24 | static_cast<Argb>(random_.index(alpha + 1)));
        }
        return Image::fromArgb(w, h, std::move(pixels));
    }

    Content content() {
        switch (random_.index(8)) {
            case 0: return Picture{image(), Filter::smooth};
            case 1: return Text{{.runs = {{"Bits", Color::white()}}}, TextAlignment::center};
            case 2: return Gradient{.colors = {color(), color(), color()}};
            case 3:
                return Shape{.path = Path::quad({0, 0}, {30, number(0, 20)}, {10, 30}),
                             .fill = color(),
                             .stroke = color(),
                             .lineWidth = number(0, 6),
                             .strokeEnd = number(0, 1)};
            case 4:
                return Emitter{.cells = {{.image = image(),
                                          .birthRate = 20,
                                          .lifetime = 0.5,
                                          .velocity = 40,
                                          .emissionRange = 6,
                                          .alphaSpeed = -2}},
                               .birthRate = static_cast<double>(random_.index(2))};
            case 5: return {};
            default: return Picture{image(), Filter::nearest};
        }
    }

    void shape(LayerProperties& l) {
        l.bounds = {0, 0, number(0, 50), number(0, 40)};
        l.position = point();
        l.content = content();
        if (random_.coin()) l.background = color();
        if (random_.index(3) == 0) l.cornerRadius = number(0, 20);
        if (random_.index(3) == 0) l.borderWidth = number(0, 4);
        l.borderColor = color();
        if (random_.index(4) == 0) {
            l.shadow = {color(), {number(-5, 5), number(-5, 5)}, number(0, 5), number(0, 1)};
        }
        l.masksToBounds = random_.index(4) == 0;
        l.artPixel = random_.index(4) == 0 ? 3 : 0;
        turn(l);
    }

    void turn(LayerProperties& l) {
        l.opacity = random_.coin() ? 1 : number(-0.2, 1);
        l.transform = {};
        if (random_.index(3) == 0) l.transform.rotation = number(-3, 3);
        if (random_.coin()) l.transform.scaleX = random_.coin() ? -1 : number(-2, 2);
        if (random_.index(3) == 0) l.transform.scaleY = number(0, 2);
    }

    AnimatedValue valueFor(KeyPath path) {
        switch (path) {
            case KeyPath::position:
            case KeyPath::transformTranslation: return point();
            case KeyPath::bounds: return Rect{number(-5, 5), 0, number(0, 50), number(0, 40)};
            case KeyPath::contentsRect: {
                const double side = random_.coin() ? 0.5 : 1;
                return Rect{random_.coin() ? 0 : 1 - side, 0, side, 1};
            }
            case KeyPath::backgroundColor:
            case KeyPath::borderColor:
            case KeyPath::strokeColor:
            case KeyPath::fillColor: return color();
            case KeyPath::positionX:
            case KeyPath::positionY: return number(-20, 120);
            case KeyPath::transformScale:
            case KeyPath::transformScaleX:
            case KeyPath::transformScaleY: return number(-1.5, 2);
            case KeyPath::transformRotation: return number(-3, 3);
            case KeyPath::cornerRadius:
            case KeyPath::borderWidth:
            case KeyPath::shadowRadius:
            case KeyPath::lineWidth: return number(-2, 8);
            default: return number(-0.2, 1.2);
        }
    }

    AnimationTiming timing() {
        constexpr std::array fills{FillMode::removed, FillMode::forwards, FillMode::backwards,
                                   FillMode::both};
        constexpr std::array repeats{1.0, 2.0, 2.5, forever};
        return {.duration = random_.index(8) == 0 ? 0 : number(0.05, 2),
                .repeatCount = random_.pick(repeats),
                .speed = random_.coin() ? 1 : number(0.3, 3),
                .autoreverses = random_.coin(),
                .beginDelay = random_.coin() ? 0 : number(0, 1),
                .fill = random_.pick(fills),
                .removedOnCompletion = random_.coin()};
    }

    Animation animation() {
        const auto path =
            static_cast<KeyPath>(random_.index(static_cast<std::size_t>(KeyPath::lineWidth) + 1));
        const auto some = [&] { return valueFor(path); };
        Animation made{.keyPath = path, .timing = timing(), .additive = random_.index(4) == 0};
        if (random_.index(3) == 0) made.curve = TimingFunction::easeInEaseOut();
        switch (random_.index(5)) {
            case 0: {
                BasicMotion basic;
                if (random_.index(3) != 0) basic.from = some();
                if (random_.index(3) != 0) basic.to = some();
                made.motion = basic;
                break;
            }
            case 1:
                made.motion = SpringMotion{.from = some(),
                                           .to = some(),
                                           .damping = 6,
                                           .initialVelocity = random_.coin() ? 0 : number(-60, 60)};
                break;
            default: {
                KeyframeMotion keys;
                for (std::size_t i = 1 + random_.index(4); i > 0; --i) {
                    keys.values.push_back(
                        keys.values.empty() || random_.index(3) != 0 ? some() : keys.values.back());
                }
                if (random_.coin()) keys.calculation = Calculation::discrete;
                if (keys.values.size() == 3 && random_.coin()) keys.keyTimes = {0, 0.3, 1};
                if (path == KeyPath::position && random_.coin()) {
                    keys.path = Path::quad(point(), point(), point());
                }
                made.motion = std::move(keys);
            }
        }
        return made;
    }

    void animate(Layer& layer) {
        const char* key = random_.coin() ? "a" : "b";
        if (random_.index(4) != 0) return layer.add(animation(), key);
        layer.add(AnimationGroup{{animation(), animation()}, timing()}, key);
    }

    void act() {
        const auto layer = any();
        const auto other = any();
        const bool makesRoom = all_.size() > 25;
        switch (layer ? random_.index(9) : 0) {
            case 0:
            case 1: {
                if (makesRoom) break;
                auto made = engine.makeLayer();
                made->change([&](LayerProperties& l) { shape(l); });
                (other && random_.coin() ? *other : tree.root()).addSublayer(made);
                all_.push_back(made);
                break;
            }
            case 2: layer->change([&](LayerProperties& l) { shape(l); }); break;
            case 3:
                layer->change([&](LayerProperties& l) {
                    turn(l);
                    l.cornerRadius = number(-10, 20);
                });
                break;
            case 4: layer->setHidden(random_.index(3) == 0); break;
            case 5: animate(*layer); break;
            case 6:
                random_.coin() ? layer->removeAllAnimations() : layer->setPosition(point());
                break;
            case 7:
                if (random_.coin())
                    tree.root().insertSublayer(layer, random_.index(5));
                else if (makesRoom)
                    drop(layer);
                break;
            case 8: {
                auto mask = engine.makeLayer();
                mask->change([&](LayerProperties& l) {
                    shape(l);
                    l.position = {number(0, 40), number(0, 30)};
                    l.background = color();
                });
                layer->setMask(random_.coin() ? mask : nullptr);
                if (layer->mask()) all_.push_back(mask);
                break;
            }
        }
    }

    void drop(const LayerRef& layer) {
        layer->removeFromSuperlayer();
        std::erase(all_, layer);
    }

    Random random_;
    double scale_;
    std::vector<LayerRef> all_;
};

using Pixels = std::vector<Argb>;

void paint(Painter& painter, const LayerTree& tree, PixelRect dirty, Pixels& pixels) {
    painter.paint(tree, dirty, {pixels.data(), width, {0, 0, width, height}});
}

/// Two worlds live the same life; one is painted bit by bit, the other anew each time, from a
/// display tree made from nothing. The first step after which their pictures differ.
std::optional<int> firstDifference(std::uint64_t seed, double scale, int steps) {
    Wilderness world(seed, scale);
    Wilderness twin(seed, scale);
    Painter painter;
    Pixels kept(static_cast<std::size_t>(width * height));
    for (int step = 0; step < steps; ++step) {
        world.live();
        for (const auto& dirty : world.tree.nextFrame(world.loop.now())) {
            paint(painter, world.tree, dirty, kept);
        }
        twin.live();
        twin.tree.damageAll();
        twin.tree.nextFrame(twin.loop.now());
        Painter other;
        Pixels fresh(kept.size());
        paint(other, twin.tree, {0, 0, width, height}, fresh);
        if (kept != fresh) return step;
    }
    return std::nullopt;
}

TEST(IncrementalPainting, EqualsPaintingEverything) {
    const std::uint64_t fresh = std::random_device{}();
    for (const std::uint64_t seed : {std::uint64_t{1}, std::uint64_t{2}, std::uint64_t{3}, fresh}) {
        for (const double scale : {1.0, 1.5, 2.0}) {
            const auto difference = firstDifference(seed, scale, 150);
            EXPECT_FALSE(difference)
                << "seed " << seed << ", scale " << scale << ", step " << difference.value_or(0);
        }
    }
}

TEST(Sleeping, LastsOnlyWhileThereIsNothingToPaint) {
    int sleeps = 0;
    for (std::uint64_t seed = 1; seed <= 2000; ++seed) {
        Wilderness world(seed, 1.5);
        LayerTree& tree = world.tree;
        for (int step = 0; step < 12; ++step) {
            world.live();
            const Instant now = world.loop.now();
            tree.nextFrame(now);
            const Instant wake = tree.nextWake(now).value_or(now + 3);
            if (wake - now < 1.0 / 50) continue;  // waits for the display alone
            ++sleeps;
            for (const double share : {0.3, 0.6, 0.9, 0.999}) {
                EXPECT_TRUE(tree.nextFrame(now + (wake - now) * share).empty())
                    << "seed " << seed << ", step " << step << ", " << share << " of "
                    << wake - now;
            }
        }
    }
    EXPECT_GT(sleeps, 2000);
}

}  // namespace
}  // namespace quibbits
