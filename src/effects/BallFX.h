#pragma once
// The little theatre about a creature's Homeball, on a second see-through panel over the stage: a
// ball that is thrown, opens, draws a creature in or lets one out, and an egg that flies, cracks
// and hatches; and what attacks and pranks draw outside a body: bolts, orbs, drops and prints. It
// only draws: it changes no creature's state and tells its caller when a creature is in or out, or
// something is hit. Shows run to their end, several at a time; the panel is up while any of them
// lasts. Points are in stage coordinates.

#include <functional>
#include <memory>

#include "body/Pet.h"
#include "layers/LayerEngine.h"
#include "layers/Panel.h"
#include "platform/Lifetime.h"
#include "platform/Random.h"

namespace quibbits {

class BallFX {
public:
    /// `frame` is the stage's; `px` is points per art pixel.
    BallFX(Panels& panels, Random& random, Rect frame, double px);
    ~BallFX();
    BallFX(const BallFX&) = delete;
    BallFX& operator=(const BallFX&) = delete;

    /// Follows the stage when the screen has changed.
    void setFrame(Rect frame) { window_->setFrame(frame); }

    /// Draws a creature into a ball beside it. `done` runs after the ball is gone, 1.57 s later.
    void recall(Pet& pet, Done done);

    struct Throw {
        Point from;    // where the ball comes from
        Point ground;  // where it lands
        Point spot;    // where the creature then stands
    };
    /// Throws a ball and lets a creature out. `emerged` runs after the ball is gone, 2.12 s later.
    void release(Pet& pet, const Throw& way, Done emerged);

    /// Throws an egg that cracks and hatches where it lands. `hatched` runs after the creature has
    /// formed, 4.7 s later.
    void hatch(Pet& pet, Point from, Point spot, Done hatched);

    // Attacks and pranks (AttackEffects.cpp).

    struct Bolt {
        Point from;
        Point to;
        double thickness = 1;
    };
    /// Lightning that flickers four times. `impact` runs 0.08 s later.
    void bolt(const Bolt& bolt, std::function<void()> impact);
    /// A wet spot on the screen that drips and dries up.
    void saliva(Point at);
    /// A trail of pictures, one every so many seconds, every other one turned over if flipped.
    void stamp(const Image& image, const std::vector<Point>& at, Seconds every, bool flipped);

    struct Orb {
        Point start;
        Seconds charge = 0.9;
        Point target;
        Image icon = {};               // is swallowed at the target; may be none
        std::function<Point()> mouth;  // asked when the orb comes back
        std::function<void()> throwing = [] {};
        std::function<void()> impact = [] {};
        std::function<void()> eaten = [] {};
    };
    /// A dark orb that swells, flies to the target, swallows what is there and comes back to be
    /// eaten, 1.8 s after its charge.
    void gloomOrb(const Orb& orb);

    bool isPlaying() const { return !root().sublayers().empty(); }

private:
    /// The capsule: a node in its middle, and the upper half, which swings open on its left end.
    struct Ball {
        LayerRef node;
        LayerRef top;
    };
    /// A creature that is drawn here for the length of a show.
    class Guest;
    enum class Half { top, bottom };

    Layer& root() const { return window_->root(); }
    Ball makeBall(Point at);
    LayerRef picture(const Image& image, Size size, Point at);
    /// A small picture in art pixels, shown on the panel.
    LayerRef show(const Image& image, Point at, double opacity);
    Path zigzag(Point from, Point to);
    void drip(const LayerRef& drop, Seconds delay);
    void dryUp(const std::vector<LayerRef>& layers);
    void swallow(const Orb& orb, const LayerRef& layer);
    static void spin(const LayerRef& layer, Seconds period);
    static void open(const Ball& ball);
    static void close(const Ball& ball);
    void vanish(const Ball& ball, Done then);
    void beam(Point from, Point to, Color color);
    void flash(Point at, Color color);
    void form(Pet& pet, Point at);
    void throwBall(const Ball& ball, Point from, Point land);
    void wobble(const LayerRef& egg, double angle, const Image* crack);
    void flyOff(Half half, Point spot);

    /// Shows the panel, with the creature on it.
    std::shared_ptr<Guest> begin(Pet& pet);
    /// Puts the creature back on its stage, and the panel away when nothing plays any more.
    void end(Guest& guest);
    void hide();
    /// Runs a moment of a show; nobody can cancel it.
    void after(Seconds delay, std::function<void()> moment);
    RunLoop& runLoop() const { return engine_.runLoop(); }

    LayerEngine& engine_;
    Random& random_;
    std::unique_ptr<Panel> window_;
    const double px_;
    Lifetime lifetime_;
};

}  // namespace quibbits
