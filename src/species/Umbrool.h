#pragma once
// The ghost line: wispul, gloamer, umbrool. A ghost does not walk: it floats and glides over the
// whole screen, and sinks into the window in front to peek out of it.

#include "creature/Companion.h"

namespace quibbits {

class Umbrool final : public Companion {
public:
    explicit Umbrool(const World& world);

    AnimRoles animRoles() const override;
    std::string sheetName(Stage stage, const std::optional<std::string>& form,
                          bool shiny) const override;
    Stage firstStage() const override { return Stage::wispul; }
    Ability ability() const override;
    MoveNames known() const override { return UmbroolLine::known(stage(), level()); }
    std::span<const Move> learnset() const override { return UmbroolLine::moves(); }
    MoveNames signatureMoves() const override { return {"Gloom Jab"}; }
    bool canEvolve() const override { return stage() == Stage::gloamer; }
    bool floats() const override { return true; }
    std::optional<Nibble> nibble() const override;
    const VoiceTable& voice() const override;
    std::string cry() const override;
    std::optional<Item> evolveItem() const override;

    void go(const Walk& walk, Done done) override;

protected:
    void fill(Mind& mind) override;
    bool beginOwn(Intent intent, const Done& next) override;
    void giveBack() override;
    /// An orb is thrown from wherever it floats.
    void takeStand(Done then) override { then(); }
    void strikeFile(const std::string& path, std::optional<Point> place, Done next) override;
    void boast(Done next) override;
    void didLevelUp() override;
    bool startDemo(const std::string& word) override;
    bool use(Item item) override;
    std::vector<std::string> playful() const override;

private:
    /// Switches of single tricks; on unless the user has switched them off.
    bool isOn(const char* key) const;
    using Companion::isOn;
    bool isGhostHour() const;
    void nightGlow(bool on);
    /// One of the species' own animations seen from the front, else its usual side.
    Anim front(const char* name, const Anim& otherwise) const;

    // What only ghosts decide to do.
    void fly(Done done);
    void phase(Done done);
    void lick(Done done);
    void snatch(Done done);
    void clone(Done done);
    void shadowGag(Done done);
    void prank(Done done);

    // Flight.
    const Anim& glideAnim() const;
    void glide(Point to, double speed, Done done);
    Step gliding(Point to, double speed);
    Step hovering(Seconds seconds);
    Point randomSpot() const;
    void trail(const Anim& anim, Seconds flight);

    // In a window.
    struct Appearance {
        Anim anim;
        double height = 0;  // points that it rises out of the edge
    };
    double along(const Rect& window) const;
    /// The highest that its feet may be at a window's upper edge, so that a share of its body is
    /// still on the screen above them.
    double lookout(const Rect& window, double share) const;
    Step appearing(const Rect& window);
    Step sinkIn();
    void peek(Point at, Done done);
    void boo(Point at, Done done);
    void climbOut(Point at, Done done);
    /// Puts the hidden body somewhere, cut off at its feet, ready to rise.
    Appearance comeUp(Point at, const Anim& anim);
    void rise(double from, double to, Seconds over);
    void fade(double to, Seconds over);
    void hide();
    void clipBelowFeet(bool on);
    void beginHaunting();
    void showWhole();

    // Mischief.
    enum class Laughing { no, yes };
    bool canSteal() const;
    double clamped(double x) const;
    Anim firstOf(std::initializer_list<const char*> names, const Anim& otherwise) const;
    void zoom(double to, Seconds over);
    void grab(Point at);
    void gloat(Done done);
    void giveCursorBack(Laughing laughing);
    void slide(const LayerRef& layer, Point to, Seconds over);
    /// The shadow goes on from where it is, in another pose.
    void replaceShadow(const Anim& anim, bool right);
    void tickleDock(const Ground& dock, Done done);
    void tugWindow(const Rect& window, Done done);
    void handprints(Done done);

    // Demos.
    void repeat(Step trick, Seconds pause);
    void booDemo(Done done);
    void orbDemo();

    // Attack.
    void gloomOrb(Point target, const std::string& path, Done done);
    /// A point beside the body, on the side to which it looks.
    Point besideBody(Vector artPixels) const;
    /// Ends a trick, laughing over it or saying a line for the moment.
    void cackle(std::optional<Moment> moment, Done done);

    // Dark copies of the body.
    LayerRef shade(const Anim& anim, Point at, bool right, double opacity);
    struct Vanishing {
        Seconds after = 0;
        Seconds over = 0;
        bool shrinks = false;
    };
    void vanish(const LayerRef& shade, const Vanishing& how);
    void beginShades();

    bool glowing_ = false;
    bool greetsNight_ = false;  // as soon as nothing else was just said
    std::vector<LayerRef> shades_;
    Begun shading_;
    Begun haunting_;  // inside a window
    Begun zoomed_;
    LayerRef fakeCursor_;                     // drawn while the real one is hidden
    std::optional<Subscription> mouseWatch_;  // waits for the user to touch the mouse
    std::function<void()> onCursorBack_;      // run once when the pointer comes back
};

}  // namespace quibbits
