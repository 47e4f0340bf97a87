// What attacks and pranks draw: bolts, drops, prints and the orb that swallows.

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "body/Pixels.h"
#include "effects/BallFX.h"
#include "effects/Motions.h"

namespace quibbits {

namespace {

constexpr double pi = std::numbers::pi;

constexpr Color yellow{1, 0.8, 0, 1};  // the desktop's own
constexpr Color boltCore{1, 1, 0.75, 1};
constexpr Color orbGlow{0.7, 0.35, 1, 1};
constexpr Color orbFlash{0.55, 0.25, 0.9, 1};

constexpr double segment = 28;  // points of a bolt between two bends
constexpr int fewestSegments = 4;
constexpr double zigzagWidth = 7;  // art pixels to either side
constexpr Seconds boltHits = 0.08;

constexpr double wet = 0.75;  // opacities
constexpr double printed = 0.7;
constexpr Seconds lasting = 4;  // before it dries up
constexpr Seconds drying = 1.5;
constexpr Seconds dry = 1.6;

constexpr double orbSide = 10;   // art pixels
constexpr double iconSide = 56;  // points
constexpr Seconds orbFlight = 0.45;
constexpr Seconds orbReturn = 0.6;

/// As large as the square for icons allows in its own proportions; pixel art in whole steps.
Size iconSize(const Image& icon) {
    const double fitting = iconSide / std::max(icon.width(), icon.height());
    const double scale = fitting >= 1 ? std::floor(fitting) : fitting;
    return {icon.width() * scale, icon.height() * scale};
}

}  // namespace

void BallFX::bolt(const Bolt& bolt, std::function<void()> impact) {
    window_->orderFront();
    const auto stroke = [&](double width, Color color) {
        LayerRef layer =
            engine_.makeLayer({.content = Shape{.fill = Color::clear(),
                                                .stroke = color,
                                                .lineWidth = bolt.thickness * px_ * width,
                                                .join = LineJoin::miter},
                               .shadow = {.color = yellow, .radius = 8, .opacity = 1}});
        root().addSublayer(layer);
        return layer;
    };
    const std::vector<LayerRef> layers{stroke(6, yellow.withAlpha(0.45)), stroke(1.6, boltCore)};

    constexpr std::array flickers{0.0, 0.06, 0.12, 0.2};
    for (const Seconds at : flickers) {
        const double opacity = at == flickers.back() ? 0.5 : 1;
        after(at, [this, layers, bolt, opacity] {
            const Transaction still(engine_, Transaction::withoutActions());
            const Path path = zigzag(bolt.from, bolt.to);
            for (const LayerRef& layer : layers) {
                layer->change([&](LayerProperties& l) {
                    std::get<Shape>(l.content).path = path;
                    l.opacity = opacity;
                });
            }
        });
    }
    after(boltHits, [this, to = bolt.to, impact = std::move(impact)] {
        flash(to, yellow);
        impact();
    });
    after(0.32, [layers] {
        for (const LayerRef& layer : layers) layer->removeFromSuperlayer();
    });
    after(0.5, [this] { hide(); });
}

Path BallFX::zigzag(Point from, Point to) {
    const Vector way = to - from;
    const double length = std::max(way.length(), 1.0);
    const int segments = std::max(static_cast<int>(length / segment), fewestSegments);
    const Vector sideways{-way.dy / length, way.dx / length};
    Path path;
    path.moveTo(from);
    for (int i = 1; i < segments; ++i) {
        const double aside = px_ * random_.uniform(-zigzagWidth, zigzagWidth);
        path.lineTo(from + way * (static_cast<double>(i) / segments) + sideways * aside);
    }
    path.lineTo(to);
    return path;
}

LayerRef BallFX::show(const Image& image, Point at, double opacity) {
    const Transaction still(engine_, Transaction::withoutActions());
    const LayerRef layer = picture(image, {image.width() * px_, image.height() * px_}, at);
    layer->setOpacity(opacity);
    root().addSublayer(layer);
    return layer;
}

void BallFX::saliva(Point at) {
    window_->orderFront();
    const LayerRef blob = show(Pixels::saliva(), at, wet);
    blob->add(through(KeyPath::transformScale, {0.6, 1}, 0.15), "splash");
    std::vector<LayerRef> all{blob};
    const int drops = 2 + (random_.coin() ? 1 : 0);
    for (int i = 0; i < drops; ++i) {
        const Point below{at.x + px_ * random_.uniform(-5, 5), at.y - 3 * px_};
        all.push_back(show(Pixels::drip(), below, wet));
        drip(all.back(), 0.4 + i / 2.0);
    }
    after(lasting, [this, all] { dryUp(all); });
}

void BallFX::drip(const LayerRef& drop, Seconds delay) {
    const Point from = drop->model().position;
    const Point to{from.x, from.y - px_ * random_.uniform(18, 40)};
    const Seconds duration = random_.uniform(2.0, 3.2);
    after(delay, [drop, from, to, duration] {
        drop->add({.keyPath = KeyPath::position,
                   .motion = KeyframeMotion{.values = {from, to}},
                   .curve = TimingFunction::easeOut(),
                   .timing = held(duration)},
                  "fall");
    });
}

void BallFX::dryUp(const std::vector<LayerRef>& layers) {
    for (const LayerRef& layer : layers) {
        layer->add(change(KeyPath::opacity, layer->model().opacity, 0, held(drying)), "dry");
    }
    after(dry, [this, layers] {
        for (const LayerRef& layer : layers) layer->removeFromSuperlayer();
        hide();
    });
}

void BallFX::stamp(const Image& image, const std::vector<Point>& at, Seconds every, bool flipped) {
    window_->orderFront();
    const auto prints = std::make_shared<std::vector<LayerRef>>();
    for (std::size_t i = 0; i < at.size(); ++i) {
        const bool turned = flipped && i % 2 == 1;
        after(static_cast<double>(i) * every, [this, prints, image, place = at[i], turned] {
            const LayerRef print = show(image, place, printed);
            const double side = turned ? -1 : 1;
            if (turned) {
                const Transaction still(engine_, Transaction::withoutActions());
                print->setTransform(Transform::mirrored());
            }
            print->add(through(KeyPath::transformScaleX, {1.3 * side, side}, 0.12), "press");
            print->add(through(KeyPath::transformScaleY, {1.3, 1}, 0.12), "pressed");
            prints->push_back(print);
        });
    }
    after(static_cast<double>(at.size()) * every + lasting, [this, prints] { dryUp(*prints); });
}

void BallFX::spin(const LayerRef& layer, Seconds period) {
    layer->add(
        change(KeyPath::transformRotation, 0, 2 * pi, {.duration = period, .repeatCount = forever}),
        "spin");
}

void BallFX::gloomOrb(const Orb& orb) {
    window_->orderFront();
    const Point start = orb.start;
    const Point target = orb.target;
    const LayerRef layer = picture(Pixels::gloomOrb(), {orbSide * px_, orbSide * px_}, start);
    {
        const Transaction still(engine_, Transaction::withoutActions());
        layer->change([](LayerProperties& l) {
            l.shadow = {.color = orbGlow, .radius = 10, .opacity = 0.9};
        });
        root().addSublayer(layer);
    }
    layer->add(through(KeyPath::transformScale, {0.15, 0.6, 0.5, 0.9, 0.8, 1}, orb.charge),
               "swell");
    spin(layer, 0.6);

    struct Flight {
        Point from, to;
        double above = 0;  // points over the higher end
        Seconds duration = 0;
        TimingFunction curve;
    };
    const auto fly = [layer](const Flight& f) {
        const Point control{(f.from.x + f.to.x) / 2, std::max(f.from.y, f.to.y) + f.above};
        layer->add({.keyPath = KeyPath::position,
                    .motion = KeyframeMotion{.path = Path::quad(f.from, f.to, control)},
                    .curve = f.curve,
                    .timing = held(f.duration)},
                   "fly");
    };
    after(orb.charge, [orb, start, target, fly] {
        orb.throwing();
        const double above = std::max(40.0, distance(start, target) / 4);
        fly({start, target, above, orbFlight, TimingFunction::easeIn()});
    });
    after(orb.charge + orbFlight, [this, orb, layer] { swallow(orb, layer); });
    after(orb.charge + 1.2, [orb, layer, target, fly] {
        layer->add(change(KeyPath::transformScale, 2.2, 0.35, held(0.25)), "size");
        fly({target, orb.mouth(), 60, orbReturn, TimingFunction::easeInEaseOut()});
    });
    after(orb.charge + 1.8, [this, orb, layer] {
        layer->removeFromSuperlayer();
        orb.eaten();
        after(0.1, [this] { hide(); });
    });
}

void BallFX::swallow(const Orb& orb, const LayerRef& layer) {
    {
        const Transaction still(engine_, Transaction::withoutActions());
        layer->removeAnimation("fly");
        layer->setPosition(orb.target);
    }
    flash(orb.target, orbFlash);
    if (orb.icon) {
        const LayerRef icon = picture(orb.icon, iconSize(orb.icon), orb.target);
        const auto& all = root().sublayers();
        const auto above = std::ranges::find(all, layer);
        root().insertSublayer(icon, static_cast<std::size_t>(above - all.begin()));
        const auto curve = TimingFunction::easeIn();
        icon->add(change(KeyPath::transformScale, 1, 0.05, held(0.7), curve), "shrink");
        icon->add(change(KeyPath::transformRotation, 0, -4 * pi, held(0.7)), "turn");
        icon->add(change(KeyPath::opacity, 1, 0, held(0.7), curve), "fade");
        after(0.75, [icon] { icon->removeFromSuperlayer(); });
    }
    orb.impact();
    layer->add(change(KeyPath::transformScale, 1, 2.2, held(0.35)), "size");
    spin(layer, 0.25);
}

}  // namespace quibbits
