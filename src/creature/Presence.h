#pragma once
// Where a creature is, and whether it is its own master there. Every condition that asks "may it do
// this now?" is answered here.

#include <cassert>

namespace quibbits {

class Presence {
public:
    /// On the stage. Who is coming out is not there yet; who is going in still is.
    bool isOut() const { return place_ != Place::inside && place_ != Place::comingOut; }
    /// In a show that nobody may disturb: a hatching, an evolution, the way out of the ball or in.
    bool isBusy() const { return place_ != Place::inside && place_ != Place::out; }
    bool isComingOut() const { return place_ == Place::comingOut; }
    /// On its way into its ball, from the moment when it was called.
    bool isGoingIn() const { return place_ == Place::called || place_ == Place::drawnIn; }
    /// And the ball has come for it; until then it may have a way down to go.
    bool isDrawnIn() const { return place_ == Place::drawnIn; }

    /// In the user's hand.
    bool isHeld() const { return held_; }
    /// Asleep because the user is away or wants quiet.
    bool isDozing() const { return dozing_; }
    bool isFainted() const { return fainted_; }

    /// Out, in nobody's hand and in no show: it can be asked to do something, if only to wake.
    bool isAtHand() const { return place_ == Place::out && !held_; }
    /// And not asleep for the user's sake: it decides for itself.
    bool isFree() const { return isAtHand() && !dozing_; }
    /// And on its feet.
    bool isReady() const { return isFree() && !fainted_; }

    // The ways from one place to another; each is possible from one place only.

    void comeOut() { go(Place::inside, Place::comingOut); }
    void arrive() { go(Place::comingOut, Place::out); }
    void call() { go(Place::out, Place::called); }
    void drawIn() { go(Place::called, Place::drawnIn); }
    void goneIn() { go(Place::drawnIn, Place::inside); }
    void beginToEvolve() { go(Place::out, Place::evolving); }
    void haveEvolved() { go(Place::evolving, Place::out); }
    /// Puts it on the stage or away, without a show.
    void put(bool out) {
        assert(!isBusy());
        place_ = out ? Place::out : Place::inside;
    }

    void pickUp() { held_ = true; }
    void putDown() { held_ = false; }
    void doze() { dozing_ = true; }
    /// Whether it was asleep.
    bool wake() {
        const bool was = dozing_;
        dozing_ = false;
        return was;
    }
    void faint() {
        fainted_ = true;
        ++faints_;
    }
    /// Tells one faint from the next.
    int faints() const { return faints_; }
    void comeRound() { fainted_ = false; }

private:
    enum class Place { inside, comingOut, out, evolving, called, drawnIn };
    void go([[maybe_unused]] Place from, Place to) {
        assert(place_ == from);
        place_ = to;
    }

    Place place_ = Place::inside;
    bool held_ = false;
    bool dozing_ = false;
    bool fainted_ = false;
    int faints_ = 0;
};

}  // namespace quibbits
