#pragma once
// A creature's body on the stage: a small tree of layers, and the operations that play animations,
// walk, jump, fall, speak and sparkle. It knows nothing of needs or decisions; a creature drives it
// and hears its events through `PetEvents`. It lives as long as its creature.
//
// Positions are in stage coordinates. The position of the body is its foot point: the spot on the
// ground under the middle of its feet. While a motion runs, the model is already at the target, so
// whoever asks where the body is reads what is presented.

#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "body/Begun.h"
#include "body/Ground.h"
#include "body/Sheets.h"
#include "body/Steps.h"
#include "layers/LayerEngine.h"
#include "layers/Panel.h"
#include "platform/Lifetime.h"
#include "platform/Text.h"
#include "rules/Item.h"

namespace quibbits {

/// What walking somewhere looks like.
struct Gait {
    Anim walk;
    Anim hop;              // for a jump
    Anim leap;             // for a jump higher than 35 art pixels
    double speed = 45;     // points a second
    double animSpeed = 1;  // of the walk animation
};

/// What a body knows of the stage on which it stands.
struct Terrain {
    std::vector<Ground> ground;  // base rows first, then desktop icons
    bool iconsKnown = true;      // false until the desktop's icons have been read
    Range walkArea;              // where the foot point may go, sideMargin inside the screen
    double ceiling = 0;          // highest y that a flying creature may use
    double skyline = std::numeric_limits<double>::infinity();  // y where the screen ends
};

/// What a body can ask of its stage.
struct StageAccess {
    std::function<std::vector<Ground>()> openSpots = [] { return std::vector<Ground>{}; };
    std::function<bool(Point)> isVisible = [](Point) { return true; };
    std::function<std::optional<Rect>()> frontWindow = [] { return std::nullopt; };
    std::function<std::optional<Point>(const std::string& path)> iconCenter =
        [](const std::string&) { return std::nullopt; };
    /// Opens the creature's menu above it.
    std::function<void()> showMenu = [] {};
};

/// What happens to a body, for the creature to which it belongs. Points are in stage coordinates.
struct PetEvents {
    std::function<void(Point)> onHover = [](Point) {};  // the pointer moved over it, no button down
    std::function<void(Point)> onCursor = [](Point) {};  // it moved anywhere, no button down
    std::function<void()> onPickUp = [] {};              // the left button went down on it
    std::function<void()> onDrop = [] {};                // it was let go
    /// Whether something dropped on it now would be heeded; else the drop is refused.
    std::function<bool()> takesItems = [] { return true; };
    std::function<bool()> takesFiles = [] { return true; };
    std::function<void(Item)> onItem = [](Item) {};        // an item was dropped on it
    std::function<void(Point)> onItemNear = [](Point) {};  // an item is being dragged nearby
    /// Files were dropped on it.
    std::function<void(const std::vector<std::string>& paths)> onZap = [](const auto&) {};
    std::function<std::optional<Menu>()> onMenu = [] { return std::optional<Menu>(); };
    std::function<void()> onGroundChanged = [] {};  // the stage has handed out new ground
    /// A motion has ended. False when somebody has taken the body over, so that what was to follow
    /// does not.
    std::function<bool()> onMoved = [] { return true; };
};

class Pet {
public:
    /// Points of the screen at either side that the foot point keeps away from.
    static constexpr double sideMargin = 20;

    /// `scale` is points per sheet pixel.
    Pet(LayerEngine& engine, const TextMeasure& text, double scale);
    ~Pet();
    Pet(const Pet&) = delete;
    Pet& operator=(const Pet&) = delete;

    // Where it stands.

    /// Comes onto a stage; it is told of nothing yet.
    void enter(StageAccess stage, Terrain terrain);
    /// The stage has other ground; the creature is told.
    void setTerrain(Terrain terrain);
    const Terrain& terrain() const { return terrain_; }
    const std::vector<Ground>& ground() const { return terrain_.ground; }
    const Range& walkArea() const { return terrain_.walkArea; }
    /// From one side of the screen to the other.
    Range screen() const { return {walkArea().lo - sideMargin, walkArea().hi + sideMargin}; }
    const StageAccess& stage() const { return stage_; }

    /// Whom it belongs to.
    void listen(PetEvents events) { events_ = std::move(events); }
    const PetEvents& events() const { return events_; }
    /// Whether the mouse reaches it; else it lets the mouse through.
    void setInteractive(bool on) { interactive_ = on; }
    bool isInteractive() const { return interactive_; }
    /// Whether it knows how to jump high.
    void setCanLeap(bool can) { canLeap_ = can; }
    bool facesRight() const { return facesRight_; }

    // The layers. The root's position is the foot point.
    Layer& node() const { return *node_; }
    const LayerRef& nodeRef() const { return node_; }
    Layer& sprite() const { return *sprite_; }
    /// Holds the sprite alone, at the foot point: a mask on it cuts off the body and not what it
    /// says.
    Layer& figure() const { return *figure_; }
    double scale() const { return scale_; }

    /// The foot point as it is seen now.
    Point position() const { return node_->presentation().position; }
    /// The sprite's rectangle on the stage as it is seen now.
    Rect frame() const;

    // Playing and waiting.

    /// Shows an animation from its first frame; a finite one stays on its last frame.
    void play(const Anim& anim, double repeats = forever, double speed = 1);
    /// Shows one still frame; past the end of the playback list, the last one.
    void hold(const Anim& anim, std::size_t frame);
    /// Runs the block after a delay, unless the body is interrupted first.
    void after(Seconds delay, std::function<void()> block);
    /// The node is about to be so many times its size, and its bubbles with it: they are placed so
    /// that they are on the screen then.
    void makeRoomFor(double size);
    /// Cancels everything that is pending or moving and undoes all that was begun. The body stays
    /// where it was seen.
    void interrupt();
    /// Keeps what a routine has begun: it is undone at the next interruption, unless the holder of
    /// the handle has ended it before.
    [[nodiscard]] Begun begin(std::function<void()> undo) { return begun_.add(std::move(undo)); }
    /// Changes with every interruption.
    int token() const { return token_; }
    /// A spot so many art pixels in front of the foot point, or behind it where the screen ends.
    Point inFront(Vector artPixels) const;
    /// Turns the sprite, without moving it.
    void face(bool right);
    void faceTowards(Point point);

    // Moving.

    double floorY(double atX) const { return quibbits::floorY(ground(), atX); }
    std::optional<std::size_t> surfaceIndex(Point under) const {
        return quibbits::surfaceIndex(ground(), under);
    }
    /// More than a point above the surface beneath it.
    bool isAirborne() const;
    JumpAbility jumpAbility() const { return {scale_, canLeap_}; }
    std::optional<Route> route(std::size_t from, std::size_t to) const {
        return quibbits::route(ground(), from, to, jumpAbility());
    }
    /// Walks and jumps to a point. Without a way there the body stays and is done at once.
    void travel(Point to, const Gait& gait, Done done);
    /// Along the ground to an x within the walk area; a point or less is done at once.
    void walk(double toX, const Anim& anim, double speed, double animSpeed, Done done);
    void jump(Point to, const Anim& hop, const Anim& leap, Done done);

    struct Motion {
        Seconds duration = 0;
        TimingFunction timing = TimingFunction::linear();
        std::optional<Path> path = std::nullopt;  // a straight line without one
    };
    void move(Point to, Motion motion, Done done);
    enum class Falling { freely, floating };
    /// Down to the surface below; gives the height of the fall in points, 0 for a point or less.
    double fall(Falling how, Done done);
    /// Places the body at once, and counts how often the direction of a drag turns over.
    void drag(Point to);
    /// Turns of direction in the present drag.
    int swings() const { return swings_; }
    void forgetSwings();

    // Effects.

    void squash();
    /// Fades out, appears at the target and fades in.
    void blink(Point to, Done done);
    void hearts();
    void stars();
    /// Sparks about the body, for a time or until somebody stops them.
    LayerRef sparks(double rate, std::optional<Seconds> duration = std::nullopt);
    /// Sways with three sparkles circling over its head, so many art pixels above the foot point.
    void dizzy(Seconds duration, double head);

    struct Emission {
        Image image;
        double height = 0;  // art pixels above the foot point
        double rate = 0;    // particles a second
        std::optional<Seconds> duration = std::nullopt;
        double velocity = 0;  // points a second
        double spread = 0;    // radians about straight up
        Seconds lifetime = 1;
        double gravity = 0;                              // points a second, a second
        Size area = {};                                  // art pixels; none emits from a point
        std::optional<double> cellScale = std::nullopt;  // the body's own unless told
        bool inFront = false;  // of everything, or behind what the creature says
    };
    LayerRef emit(const Emission& emission);
    /// Lets the particles in flight live out and takes the emitter away.
    void stopEmitting(const LayerRef& emitter);

    struct Food {
        Image image;
        int bites = 3;
        Seconds over = 0;
        double at = 0;  // art pixels above the foot point
    };
    /// Holds food up that shrinks bite by bite; the caller takes the layer away.
    LayerRef holdFood(const Food& food);
    struct Meal {
        Image crumbs;
        Seconds duration = 0;
        Seconds chew = 0;  // of one bite
    };
    /// Chews; the emitter of the crumbs, which ends by itself with the meal.
    LayerRef munch(Layer& food, const Meal& meal);
    /// A still shape of the frame being shown, filled with a colour, on top of the sprite.
    LayerRef silhouette(Color color);

    // Speaking.

    struct Expression {
        Image image;  // the portrait; none shows a panel alone
        std::optional<std::string> caption = std::nullopt;
        std::optional<std::string> speaker = std::nullopt;
        Image thought = {};  // a small picture beside the portrait
        Seconds seconds = 2.5;
        double tall = 0;  // art pixels of the figure; the bubble stands above it
    };
    /// The portrait bubble, with a speech panel when there is a caption. A newer one replaces it.
    void showFace(const Expression& expression);
    /// How long a caption takes to be typed out.
    static Seconds typingTime(const std::string& caption);

    const Lifetime& lifetime() const { return lifetime_; }
    RunLoop& runLoop() const { return engine_.runLoop(); }

private:
    /// Where the parts of a bubble belong, relative to the foot point, and how far they stand from
    /// there because the screen ends.
    struct Speech {
        Rect bounds;
        Vector shift;
    };
    struct Spoken {
        Rect panel;
        Seconds typing = 0;
    };
    std::optional<Spoken> showDialog(const Expression& expression, int turn);
    /// How far the bubble must move to be on the screen at both ends of the body's way: to the
    /// side, and beneath the feet where there is no room above the head.
    Vector shiftIntoSight(Rect bubble, Point from, Point to) const;
    /// Moves the bubble so that it is on the screen while the body goes there, and tells how far.
    Vector keepSpeechInSight(Point to);
    /// Shows a bubble that has been moved gliding to its place; up and down with the body's motion.
    void glideSpeech(Vector moved, Seconds motion);
    void typeOut(const StyledText& whole, std::size_t prefix, Seconds step, int turn);
    void showThought(const Image& image, Point at);
    void buildLayers();

    LayerEngine& engine_;
    const TextMeasure& text_;
    double scale_;

    LayerRef node_;
    LayerRef figure_;
    LayerRef sprite_;
    LayerRef bubble_;
    LayerRef bubbleLine_;
    LayerRef dialog_;
    LayerRef dialogLine_;
    LayerRef dialogArrow_;
    LayerRef caption_;
    LayerRef thought_;
    int bubbleTurn_ = 0;
    Speech speech_;           // without bounds while nothing is shown
    double enlargement_ = 1;  // of the node, as bubbles are placed for

    Terrain terrain_;
    StageAccess stage_;
    PetEvents events_;
    bool interactive_ = true;
    bool canLeap_ = true;
    bool facesRight_ = true;

    int token_ = 0;
    Beginnings begun_;
    int swings_ = 0;
    std::optional<Point> lastDrag_;
    Vector lastSwing_;

    Lifetime lifetime_;
};

}  // namespace quibbits
