#include "effects/BallFX.h"

#include <numbers>

#include "body/Pixels.h"
#include "effects/Motions.h"

namespace quibbits {

namespace {

constexpr double pi = std::numbers::pi;

constexpr Color white = Color::white();
constexpr Color recallBeam{1, 0.23, 0.19, 1};  // the desktop's own red
constexpr Color drawnIn{1, 0.2, 0.25, 1};

// In art pixels.
constexpr double ballSide = 12;
constexpr double bodyMiddle = 14;  // where a beam meets a creature
constexpr double beside = 30;      // from a creature to the ball that takes it in
constexpr double ballHeight = 16;
constexpr Size eggSize{12, 15};

constexpr double ajar = 0.95;    // radians of an open ball
constexpr double ballArch = 40;  // points of the throw above its start
constexpr double eggArch = 30;   // points
constexpr Seconds ballFlight = 0.6;
constexpr Seconds eggFlight = 0.9;
constexpr Seconds vanishing = 0.27;

/// From one point to another in an arch, faster and faster.
Animation flight(Point from, Point to, double arch, Seconds duration) {
    const Point control{(from.x + to.x) / 2, from.y + arch};
    return {.keyPath = KeyPath::position,
            .motion = KeyframeMotion{.path = Path::quad(from, to, control)},
            .curve = TimingFunction::easeIn(),
            .timing = {.duration = duration}};
}

Animation bounce(double y, double high, double low, Seconds duration) {
    return {.keyPath = KeyPath::positionY,
            .motion = KeyframeMotion{.values = values({y, y + high, y, y + low, y}),
                                     .keyTimes = {0, 0.3, 0.6, 0.8, 1}},
            .timing = {.duration = duration}};
}

}  // namespace

// What happens on the panel ---------------------------------------------------------------------

class BallFX::Guest {
public:
    explicit Guest(Pet& guest) : pet(guest) {
        if (Layer* stage = pet.node().superlayer()) home_ = stage->weak_from_this();
    }
    /// Back to where it came from; it stays where it is when that is gone.
    void goHome() {
        if (const LayerRef stage = home_.lock()) stage->addSublayer(pet.nodeRef());
    }
    Pet& pet;
    LayerRef silhouette;

private:
    std::weak_ptr<Layer> home_;
};

BallFX::BallFX(Panels& panels, Random& random, Rect frame, double px)
    : engine_(panels.layers()),
      random_(random),
      window_(panels.makePanel({.frame = frame, .level = PanelLevel::floating})),
      px_(px) {}

BallFX::~BallFX() = default;

void BallFX::after(Seconds delay, std::function<void()> moment) {
    runLoop().after(delay, lifetime_.guard(std::move(moment)));
}

std::shared_ptr<BallFX::Guest> BallFX::begin(Pet& pet) {
    window_->orderFront();
    auto guest = std::make_shared<Guest>(pet);
    root().addSublayer(pet.nodeRef());
    return guest;
}

void BallFX::end(Guest& guest) {
    guest.goHome();
    hide();
}

void BallFX::hide() {
    if (!isPlaying()) window_->orderOut();
}

// Shows -----------------------------------------------------------------------------------------

void BallFX::recall(Pet& pet, Done done) {
    const auto guest = begin(pet);
    const Point body = pet.position();
    const double side = pet.facesRight() ? beside : -beside;
    const Point at{body.x + side * px_, body.y + ballHeight * px_};
    const Ball ball = makeBall(at);
    ball.node->add({.keyPath = KeyPath::transformScale,
                    .motion = KeyframeMotion{.values = values({0.2, 1})},
                    .timing = {.duration = 0.18}},
                   "appear");

    after(0.25, [ball] { open(ball); });
    after(0.35, [this, at, body] { beam(at, {body.x, body.y + bodyMiddle * px_}, recallBeam); });
    after(0.45, [guest] { guest->silhouette = guest->pet.silhouette(drawnIn); });
    after(0.62, [ball] { close(ball); });
    after(0.70, [guest, body, at] {
        Layer& node = guest->pet.node();
        node.add(change(KeyPath::transformScale, 1, 0.05, held(0.3), TimingFunction::easeIn()),
                 "transform.scale");
        node.add({.keyPath = KeyPath::position,
                  .motion = BasicMotion{.from = body, .to = at},
                  .curve = TimingFunction::easeIn(),
                  .timing = held(0.3)},
                 "position");
    });
    after(0.75, [ball] {
        ball.node->add({.keyPath = KeyPath::transformRotation,
                        .motion = KeyframeMotion{.values = values({0, 0.25, -0.25, 0.15, 0})},
                        .timing = {.duration = 0.5}},
                       "wobble");
    });
    after(1.01, [this, guest] {
        {
            const Transaction still(engine_, Transaction::withoutActions());
            guest->pet.node().setHidden(true);
            guest->silhouette->removeFromSuperlayer();
        }
        guest->pet.node().removeAnimation("transform.scale");
        guest->pet.node().removeAnimation("position");
        guest->goHome();
    });
    after(1.3, [this, ball, done = std::move(done)] {
        vanish(ball, [this, done] {
            hide();
            done();
        });
    });
}

void BallFX::release(Pet& pet, const Throw& way, Done emerged) {
    const auto guest = begin(pet);
    const Point land{way.ground.x, way.ground.y + ballSide / 2 * px_};
    const Ball ball = makeBall(land);
    throwBall(ball, way.from, land);

    after(1.05, [this, ball, land, spot = way.spot] {
        open(ball);
        flash(land, white);
        beam(land, {spot.x, spot.y + bodyMiddle * px_}, white);
    });
    after(1.2, [this, guest, spot = way.spot] { form(guest->pet, spot); });
    after(1.65, [ball] { close(ball); });
    after(1.85, [this, guest, ball, emerged = std::move(emerged)] {
        vanish(ball, [this, guest, emerged] {
            end(*guest);
            emerged();
        });
    });
}

void BallFX::throwBall(const Ball& ball, Point from, Point land) {
    ball.node->add(flight(from, land, ballArch, ballFlight), "fly");
    ball.node->add(change(KeyPath::transformRotation, 0, -4 * pi, {.duration = ballFlight}),
                   "tumble");
    after(ballFlight,
          [this, ball, land] { ball.node->add(bounce(land.y, 7 * px_, 2 * px_, 0.4), "bounce"); });
}

void BallFX::hatch(Pet& pet, Point from, Point spot, Done hatched) {
    const auto guest = begin(pet);
    const LayerRef egg = picture(Pixels::egg(), {eggSize.width * px_, eggSize.height * px_}, spot);
    {
        const Transaction still(engine_, Transaction::withoutActions());
        egg->change([](LayerProperties& l) { l.anchorPoint = {0.5, 0}; });
        root().addSublayer(egg);
    }
    egg->add(flight(from, spot, eggArch, eggFlight), "fly");
    after(eggFlight,
          [this, egg, spot] { egg->add(bounce(spot.y, 5 * px_, 1.5 * px_, 0.35), "bounce"); });
    after(1.6, [this, egg] { wobble(egg, 0.15, nullptr); });
    after(2.4, [this, egg] { wobble(egg, 0.22, &Pixels::eggCracked()[0]); });
    after(3.1, [this, egg] { wobble(egg, 0.3, &Pixels::eggCracked()[1]); });
    after(3.75, [this, guest, egg, spot] {
        egg->removeFromSuperlayer();
        flash({spot.x, spot.y + eggSize.height / 2 * px_}, white);
        flyOff(Half::top, spot);
        flyOff(Half::bottom, spot);
        form(guest->pet, spot);
    });
    after(4.7, [this, guest, hatched = std::move(hatched)] {
        end(*guest);
        hatched();
    });
}

// Their parts -----------------------------------------------------------------------------------

LayerRef BallFX::picture(const Image& image, Size size, Point at) {
    return engine_.makeLayer({.bounds = {0, 0, size.width, size.height},
                              .position = at,
                              .content = Picture{image, Filter::nearest}});
}

BallFX::Ball BallFX::makeBall(Point at) {
    const double side = ballSide * px_;
    const Size half{side, side / 2};
    const Transaction still(engine_, Transaction::withoutActions());
    const LayerRef node = engine_.makeLayer({.bounds = {0, 0, side, side}, .position = at});
    node->addSublayer(picture(Pixels::homeballBottom(), half, {side / 2, side / 4}));
    const LayerRef top = picture(Pixels::homeballTop(), half, {0, side / 2});
    top->change([](LayerProperties& l) { l.anchorPoint = {0, 0}; });
    node->addSublayer(top);
    root().addSublayer(node);
    return {node, top};
}

void BallFX::open(const Ball& ball) {
    ball.top->add(change(KeyPath::transformRotation, 0, ajar, held(0.12)), "hinge");
}

void BallFX::close(const Ball& ball) {
    ball.top->add(change(KeyPath::transformRotation, ajar, 0, held(0.1)), "hinge");
}

void BallFX::vanish(const Ball& ball, Done then) {
    ball.node->add(change(KeyPath::transformScale, 1, 0.2, held(0.25)), "shrink");
    ball.node->add(change(KeyPath::opacity, 1, 0, held(0.25)), "fade");
    after(vanishing, [node = ball.node, then = std::move(then)] {
        node->removeFromSuperlayer();
        then();
    });
}

void BallFX::beam(Point from, Point to, Color color) {
    const auto ray = [&](double width, double alpha) {
        LayerRef layer = engine_.makeLayer({.content = Shape{.path = Path::line(from, to),
                                                             .fill = Color::clear(),
                                                             .stroke = color.withAlpha(alpha),
                                                             .lineWidth = width * px_,
                                                             .cap = LineCap::round},
                                            .shadow = {.color = color, .radius = 8, .opacity = 1}});
        root().addSublayer(layer);
        layer->add(change(KeyPath::strokeEnd, 0, 1, {.duration = 0.12}), "shoot");
        after(0.3, [layer] { layer->setOpacity(0); });
        after(0.6, [layer] { layer->removeFromSuperlayer(); });
    };
    ray(5, 0.35);
    ray(2, 1);
}

void BallFX::flash(Point at, Color color) {
    const double side = 24 * px_;
    const LayerRef burst =
        engine_.makeLayer({.bounds = {0, 0, side, side},
                           .position = at,
                           .opacity = 0,
                           .background = color.withAlpha(0.9),
                           .cornerRadius = side / 2,
                           .shadow = {.color = color, .radius = 10, .opacity = 1}});
    root().addSublayer(burst);
    burst->add({.keyPath = KeyPath::transformScale,
                .motion = KeyframeMotion{.values = values({0.2, 1.6})},
                .timing = {.duration = 0.35}},
               "grow");
    burst->add({.keyPath = KeyPath::opacity,
                .motion = KeyframeMotion{.values = values({0, 1, 0}), .keyTimes = {0, 0.2, 1}},
                .timing = {.duration = 0.35}},
               "flash");
    after(0.4, [burst] { burst->removeFromSuperlayer(); });
}

void BallFX::form(Pet& pet, Point at) {
    LayerRef light;
    {
        const Transaction still(engine_, Transaction::withoutActions());
        pet.node().setHidden(false);
        pet.drag(at);
        light = pet.silhouette(white);
    }
    pet.node().add(
        {.keyPath = KeyPath::transformScale,
         .motion = KeyframeMotion{.values = values({0.1, 1.12, 1}), .keyTimes = {0, 0.75, 1}},
         .timing = {.duration = 0.4}},
        "grow");
    const std::function<void()> sparkle = pet.lifetime().guard([&pet] { pet.sparks(16, 0.3); });
    after(0.45, [light, sparkle] {
        light->setOpacity(0);
        sparkle();
    });
    after(0.8, [light] { light->removeFromSuperlayer(); });
}

void BallFX::wobble(const LayerRef& egg, double angle, const Image* crack) {
    if (crack) {
        const Transaction still(engine_, Transaction::withoutActions());
        egg->setContent(Picture{*crack, Filter::nearest});
    }
    egg->add({.keyPath = KeyPath::transformRotation,
              .motion = KeyframeMotion{.values = values({0, angle, -angle, 0.6 * angle, 0})},
              .timing = {.duration = 0.45}},
             "rock");
}

void BallFX::flyOff(Half half, Point spot) {
    struct Piece {
        const Image& image;
        double height;  // art pixels, as all that follows
        double middle;  // above the spot
        Vector way;
        double spin;  // radians
    };
    const Piece piece = half == Half::top
                            ? Piece{Pixels::eggTop(), 7, eggSize.height - 3.5, {-10, 26}, 0.9}
                            : Piece{Pixels::eggBottom(), 8, 4, {12, 6}, -0.5};
    const Point from{spot.x, spot.y + piece.middle * px_};
    const LayerRef shell = picture(piece.image, {eggSize.width * px_, piece.height * px_}, from);
    root().addSublayer(shell);
    shell->add({.keyPath = KeyPath::position,
                .motion = BasicMotion{.from = from, .to = from + piece.way * px_},
                .curve = TimingFunction::easeOut(),
                .timing = held(0.5)},
               "fly");
    shell->add(change(KeyPath::transformRotation, 0, piece.spin, held(0.5)), "spin");
    shell->add(change(KeyPath::opacity, 1, 0, held(0.5)), "fade");
    after(0.55, [shell] { shell->removeFromSuperlayer(); });
}

}  // namespace quibbits
