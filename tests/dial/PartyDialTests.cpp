#include <gtest/gtest.h>

#include "FakeParty.h"
#include "dial/PartyDial.h"

namespace quibbits {
namespace {

class ThePartyDial : public ::testing::Test {
protected:
    ThePartyDial() {
        dial_.emplace(c_.computer(), c_.panels(), party_.members());
        dial_->onItemDrag = [this](std::optional<Point> at) { itemSteps_.push_back(at); };
    }
    SimulatedPanel& panel() { return *c_.shownPanels().back(); }
    /// A point of the view in global coordinates.
    Point global(Point inView) {
        const Rect frame = panel().frame().inset(PartyDial::shadowMargin);
        return inView + Vector{frame.x, frame.y};
    }
    void open() {
        c_.clickStatusItem(MouseButton::left);
        c_.runLoop.advance(2);
    }
    void click(Point at) {
        c_.movePointer(at);
        c_.press(MouseButton::left);
        c_.release(MouseButton::left);
    }
    void beginBerryDrag() {
        c_.movePointer(global(dial_->view()->items().front().rect.center()));
        c_.press(MouseButton::left);
        c_.movePointer(c_.pointer.place + Vector{3, 0});
    }

    Desk desk_;
    SimulatedComputer& c_ = desk_.computer;
    FakeParty party_{{{.stats = sparrelStats(), .isOut = true}, {.stats = sparrelStats()}}};
    std::optional<PartyDial> dial_;
    std::vector<std::optional<Point>> itemSteps_;
    static constexpr Rect icon_{1280, 876, 24, 24};
};

TEST_F(ThePartyDial, OpensUnderItsIconAndClosesAtTheNextClick) {
    EXPECT_EQ(c_.statusItem.toolTip, "Quibbits");
    EXPECT_TRUE(c_.statusItem.image);
    ASSERT_EQ(c_.statusItem.frame(), icon_);
    open();
    ASSERT_TRUE(dial_->isOpen());
    EXPECT_TRUE(panel().isVisible());
    EXPECT_EQ(panel().level(), PanelLevel::menu);
    EXPECT_EQ(panel().frame().inset(24), (Rect{1124, 600, 316, 272}));
    open();
    EXPECT_FALSE(dial_->isOpen()) << "the press on the icon has not closed it already";
    EXPECT_TRUE(c_.shownPanels().empty()) << "nothing of it is kept";
}

TEST(ThePlaceOfTheDial, IsBelowTheIconOrAboveATrayAtTheBottomAndInsideTheScreen) {
    const Screen screen{.frame = {0, 0, 1440, 900}, .visibleFrame = {0, 36, 1440, 864}};
    using DialShape::Ends;
    struct Row {
        const char* icon;
        Rect at;
        Point expected;
        DialShape::Ends ends;
    };
    for (const auto& [icon, at, expected, ends] : std::vector<Row>{
             {"in the middle of a bar at the top", {708, 876, 24, 24}, {562, 600}, Ends::cut},
             {"at the right end", {1410, 876, 24, 24}, {1124, 600}, Ends::cut},
             {"at the left end", {0, 876, 24, 24}, {0, 600}, Ends::cut},
             {"in a tray at the bottom", {708, 4, 24, 24}, {562, 40}, Ends::round},
             {"at the right end of the bottom", {1410, 4, 24, 24}, {1124, 40}, Ends::round},
             {"high up on a tray at the side", {2, 600, 24, 24}, {0, 324}, Ends::round},
             {"low on a tray at the side", {2, 280, 24, 24}, {0, 4}, Ends::round},
         }) {
        const Rect frame = PartyDial::viewFrame(at, screen);
        EXPECT_EQ(frame, (Rect{expected.x, expected.y, 316, 272})) << icon;
        EXPECT_EQ(PartyDial::ends(frame, at, screen), ends) << icon;
    }
    // Clear of panels at the sides, with room for the ends of its arms.
    const Screen beside{.frame = {0, 0, 1440, 900}, .visibleFrame = {48, 0, 1344, 900}};
    for (const auto& [icon, at, expected, ends] : std::vector<Row>{
             {"in a panel at the left", {0, 500, 48, 24}, {52, 224}, Ends::round},
             {"at its upper end", {0, 870, 48, 24}, {52, 594}, Ends::round},
             {"at its lower end", {0, 10, 48, 24}, {52, 38}, Ends::round},
             {"in a panel at the right", {1392, 500, 48, 24}, {1072, 224}, Ends::round},
         }) {
        const Rect frame = PartyDial::viewFrame(at, beside);
        EXPECT_EQ(frame, (Rect{expected.x, expected.y, 316, 272})) << icon;
        EXPECT_EQ(PartyDial::ends(frame, at, beside), ends) << icon;
        EXPECT_LE(frame.maxY() + 14, 900) << icon;
    }
    // Below a bar that is higher than its icons.
    const Screen below{.frame = {0, 0, 1440, 900}, .visibleFrame = {0, 0, 1440, 836}};
    for (const Rect at : {Rect{700, 856, 24, 24}, Rect{700, 870, 24, 24}, Rect{700, 838, 24, 24}}) {
        const Rect frame = PartyDial::viewFrame(at, below);
        EXPECT_LE(frame.maxY(), 836) << at.y;
        EXPECT_GE(frame.maxY(), 834) << at.y;
        EXPECT_EQ(PartyDial::ends(frame, at, below), Ends::cut) << at.y;
    }
    EXPECT_EQ(PartyDial::viewFrame({10, 4, 24, 24}, std::nullopt).origin(), (Point{-136, -272}));
}

TEST_F(ThePartyDial, OpensNothingWithoutAPlaceForTheIcon) {
    c_.screens.screen.reset();
    c_.statusItem.onClick();
    EXPECT_FALSE(dial_->isOpen());
    EXPECT_EQ(dial_->anchor(), std::nullopt);
}

TEST_F(ThePartyDial, ASlotClickClosesItAndTogglesTheCreatureFromTheIconsLowerEdge) {
    open();
    click(global(DialShape::slotCenter(1)));
    EXPECT_FALSE(dial_->isOpen());
    EXPECT_EQ(party_.creatures[1].toggles, (std::vector<Point>{{1292, 876}}));
    EXPECT_TRUE(party_.creatures[0].toggles.empty());

    open();
    click(global(DialShape::slotCenter(3)));
    EXPECT_TRUE(dial_->isOpen()) << "an empty slot does nothing";
}

TEST_F(ThePartyDial, APressElsewhereClosesIt) {
    open();
    const Point beside = global({8, 60});
    ASSERT_TRUE(panel().frame().contains(beside));
    click(beside);
    EXPECT_FALSE(dial_->isOpen()) << "the corners beside the shape are not the dial";
    open();
    c_.movePointer({300, 300});
    c_.press(MouseButton::right);
    EXPECT_FALSE(dial_->isOpen());
    open();
    click(global({158, 120}));
    EXPECT_TRUE(dial_->isOpen()) << "its neck is the dial";
}

TEST_F(ThePartyDial, HidesWhileAnItemIsDraggedAndClosesWhenTheDragEnds) {
    open();
    beginBerryDrag();
    c_.movePointer({500, 500});
    ASSERT_TRUE(dial_->isOpen());
    EXPECT_EQ(panel().alpha(), 0);
    EXPECT_EQ(itemSteps_.back(), (Point{500, 500}));
    c_.pointer.elsewhere.emit(PointerEvent::leftDown);
    EXPECT_TRUE(dial_->isOpen()) << "a hidden dial is not closed by a press";
    c_.release(MouseButton::left);
    EXPECT_FALSE(dial_->isOpen());
    EXPECT_EQ(itemSteps_.back(), std::nullopt);
}

TEST_F(ThePartyDial, ADragThatOutlivesItIsToldToItsEnd) {
    open();
    beginBerryDrag();
    dial_->close();
    c_.runLoop.advance(1);
    c_.movePointer({400, 400});
    c_.release(MouseButton::left);
    EXPECT_EQ(itemSteps_, (std::vector<std::optional<Point>>{Point{400, 400}, std::nullopt}));
}

TEST_F(ThePartyDial, ItsMenuClosesItAndLeadsToTheSettingsAndToTheEnd) {
    open();
    c_.clickStatusItem(MouseButton::right);
    EXPECT_FALSE(dial_->isOpen());
    ASSERT_TRUE(c_.statusItem.openMenu);
    std::vector<std::string> titles;
    for (const auto& item : c_.statusItem.openMenu->items) titles.push_back(item.title);
    EXPECT_EQ(titles, (std::vector<std::string>{"Settings…", "", "Quit Quibbits"}));
    EXPECT_FALSE(c_.choose("Settings…")) << "there are none to show";

    std::string chosen;
    dial_->onSettings = [&] { chosen += "settings "; };
    dial_->onQuit = [&] { chosen += "quit"; };
    for (const char* line : {"Settings…", "Quit Quibbits", "Dance"}) {
        c_.clickStatusItem(MouseButton::right);
        c_.choose(line);
    }
    EXPECT_EQ(chosen, "settings quit");
}

TEST_F(ThePartyDial, FollowsThePointerAndRepaintsNothingWhileItIsStill) {
    open();
    c_.movePointer(global(DialShape::slotCenter(0)));
    const auto before = panel().repaints;
    c_.runLoop.advance(1.0 / 30 + 0.001);
    EXPECT_EQ(dial_->view()->hovered(), 0);
    c_.runLoop.advance(2);
    EXPECT_GT(panel().repaints, before);

    const auto settled = panel().repaints;
    const auto woken = c_.runLoop.wakeUps();
    c_.runLoop.advance(60);
    EXPECT_EQ(panel().repaints, settled);
    EXPECT_LE(c_.runLoop.wakeUps() - woken, 30u * 60 + 1) << "the hover timer alone";
    dial_->close();
    const auto closed = c_.runLoop.wakeUps();
    c_.runLoop.advance(60);
    EXPECT_LE(c_.runLoop.wakeUps() - closed, 1u) << "nothing goes on behind a closed dial";
}

TEST_F(ThePartyDial, LeavesNothingBehindWhenItGoesWhileItIsOpen) {
    open();
    beginBerryDrag();
    dial_.reset();
    EXPECT_TRUE(c_.shownPanels().empty());
    c_.movePointer({10, 10});
    c_.release(MouseButton::left);
    c_.clickStatusItem(MouseButton::left);
    c_.runLoop.advance(5);
}

}  // namespace
}  // namespace quibbits
