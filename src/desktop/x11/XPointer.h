#pragma once
// The pointer wherever it is. Button events are always heard, and they are rare. Moves are not: one
// raw motion event wakes this, then the position is asked for at a pace until the pointer has been
// still for a second, and only then raw motion is listened for again. So a still mouse costs
// nothing and a quick one no more than its pace.

#include <xcb/xinput.h>

#include <map>

#include "desktop/x11/Connection.h"
#include "desktop/x11/XScreens.h"
#include "platform/Lifetime.h"
#include "platform/Pointer.h"

namespace quibbits::x11 {

/// How often the position of a moving pointer is asked for.
enum class Pace {
    calm,   // 10 times a second
    brisk,  // 25: something that takes clicks may be reached within a tenth of a second
    quick,  // 60: close to a creature, or with a button down
};

/// A window of this program that gets the moves and releases while the pointer is its own.
class PointerOwner {
public:
    virtual void pointerMoved() = 0;

protected:
    ~PointerOwner() = default;
};

class XPointer final : public Pointer {
public:
    XPointer(Connection& connection, const XScreens& screens);
    ~XPointer() override;

    Point location() const override;
    MouseButtons buttons() const override { return buttons_; }
    Modifiers modifiers() const override;
    Seconds idle() const override;
    Seconds untouched() const override;
    bool setHidden(bool hidden) override;
    PointerPicture picture() const override;

    /// The pace that somebody needs; the quickest wish counts.
    void setPace(const void* who, Pace pace);

    /// From now on moves go to this window, until it gives them back.
    void give(PointerOwner& owner) { owner_ = &owner; }
    void takeBack(const PointerOwner& owner) {
        if (owner_ == &owner) owner_ = nullptr;
    }
    /// A window was told where the pointer is and what is pressed; saves asking. Whether anything
    /// of it is new: a window that comes under a pointer at rest is told, too.
    bool learn(int rootX, int rootY, std::optional<MouseButtons> buttons);
    /// A window of this program got the press that the server stamped with this time.
    void receivedPress(xcb_timestamp_t time) { receivedPress_ = time; }
    /// The pointer came onto a window of this program that is no panel, or left it.
    void setOverOwnWindow(bool over) { overOwnWindow_ = over; }

    /// The position was asked for and has changed. Comes before `elsewhere`.
    Signal<> tracked;

private:
    void select(bool motion);
    void rawMotion();
    void rawButton(bool pressed, const xcb_input_raw_button_press_event_t& event);
    void pressedSomewhere(PointerEvent what, xcb_timestamp_t time);
    void startAsking();
    void ask();
    void query() const;
    bool hasMoved() const { return x_ != toldX_ || y_ != toldY_; }
    void tellMoved();
    Seconds interval() const;

    Connection& connection_;
    const XScreens& screens_;
    PointerOwner* owner_ = nullptr;
    bool listening_ = false;  // for raw motion; otherwise asking
    bool hidden_ = false;
    std::map<const void*, Pace> paces_;
    Timer asking_;
    Seconds askingInterval_ = 0;
    int toldX_ = 0;  // where the pointer was when listeners were last told
    int toldY_ = 0;
    Instant lastMove_ = 0;
    Instant lastTouch_ = 0;
    xcb_timestamp_t receivedPress_ = 0;
    bool overOwnWindow_ = false;
    MouseButtons toldButtons_;  // as they were after the last press or release
    std::uint32_t idleCounter_ = 0;

    mutable int x_ = 0;  // pixels of the root window
    mutable int y_ = 0;
    mutable MouseButtons buttons_;
    mutable Modifiers modifiers_;
    mutable Instant asked_ = 0;
    std::vector<Subscription> subscriptions_;
    Lifetime lifetime_;
};

}  // namespace quibbits::x11
