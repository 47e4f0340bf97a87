// The windows without a mouse, and for those who cannot see them.

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabBar>
#include <algorithm>
#include <cmath>
#include <map>

#include "window/Accessible.h"
#include "window/FocusRing.h"
#include "window/Look.h"
#include "window/Window.h"

namespace quibbits::window {
namespace {

using namespace views;

class TheWindow : public testing::Test {
protected:
    TheWindow() {
        static const bool told = [] {
            tellAssistivePrograms();
            return true;
        }();
        EXPECT_TRUE(told);
        window_.begin({.title = "Quibbits", .size = {700, 500}, .resizable = true});
        window_.onClosed = [this] { ++closed_; };
    }
    void show(View tree) {
        window_.showTree(std::move(tree));
        QApplication::setActiveWindow(&window_);
        QCoreApplication::processEvents();
    }
    void press(int key, Qt::KeyboardModifiers with = {}) {
        QWidget* to = QApplication::focusWidget() ? QApplication::focusWidget() : &window_;
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, with, key == Qt::Key_Space ? " " : "");
            QApplication::sendEvent(to, &event);
        }
        QCoreApplication::processEvents();
    }
    bool ringIsSeen() const {
        const auto* ring = window_.findChild<QWidget*>("focus ring");
        return ring && ring->isVisible();
    }
    template <typename Widget>
    QList<Widget*> all() {
        return window_.findChildren<Widget*>();
    }
    /// A page with one of everything that can be acted upon.
    static View everything() {
        View rows{.content = Section{"Rules"}, .id = "section"};
        rows.children = {
            {.content = Toggle{"Gets hungry", "Comes and asks.", true}, .id = "toggle"},
            {.content = Stepper{"After 30 minutes", 30, 15, 45, 15}, .id = "stepper"},
            {.content = Picker{"Region", {{"a", "Fernvale"}, {"b", "Coralis"}}, "a"}, .id = "pick"},
            {.content = Button{.title = "", .symbol = "minus.circle"},
             .id = "remove",
             .spoken = "Remove Firefox"},
            {.content = Chooser{"Add App…", {{"g", "Gimp", ""}, {"v", "vim", ""}}}, .id = "add"},
            {.content = Meter{.title = "Belly", .amount = 0.42}},
            {.content = Link{"Somebody", "https://example.org"}, .id = "link"},
            {.content = Disclosure{"All natures"}, .id = "more"},
            {.content = Card{.opens = true},
             .id = "card",
             .children = {{.content = Text{"Sparrel"}}},
             .spoken = "Sparrel"}};
        View tabs{.content = TabView{0}, .id = "tabs"};
        tabs.children = {
            {.content = Tab{"One", "bolt"},
             .id = "one",
             .children = {{.content = Column{},
                           .children = {{.content =
                                             Picker{"Page", {{"x", "X"}, {"y", "Y"}}, "x", true},
                                         .id = "segments"},
                                        {.content = Form{}, .children = {rows}}}}}},
            {.content = Tab{"Two", "heart"}, .id = "two"}};
        return {.content = Split{"a"},
                .id = "split",
                .children = {{.content = SidebarRow{"Party"}, .id = "a"},
                             {.content = SidebarRow{"General"}, .id = "b"},
                             tabs}};
    }

    std::vector<Action> actions_;
    Window window_{[this](const Action& action) { actions_.push_back(action); }};
    int closed_ = 0;
};

TEST_F(TheWindow, TabReachesEveryControlOnceAndComesBack) {
    show(everything());
    std::vector<QWidget*> stops;
    for (int i = 0; i < 40; ++i) {
        press(Qt::Key_Tab);
        QWidget* at = QApplication::focusWidget();
        ASSERT_NE(at, nullptr);
        if (!stops.empty() && at == stops.front()) break;
        if (qobject_cast<QLabel*>(at)) continue;  // stops at itself and at its link
        EXPECT_EQ(std::ranges::count(stops, at), 0)
            << at->metaObject()->className() << " " << at->accessibleName().toStdString();
        stops.push_back(at);
    }
    // The chosen row, the tabs, the segments, the switch, two steps, the list, two buttons, the
    // link, the natures and the card.
    // Whoever opens the window has the keyboard on the first of them.
    std::rotate(stops.begin(), stops.end() - 1, stops.end());
    // As a person reads: the sidebar, the tabs, the segments, then the page from its top.
    const auto placeOf = [&](const auto& isIt) {
        return std::ranges::find_if(stops, isIt) - stops.begin();
    };
    const auto named = [&](const char* name) {
        return placeOf([&](QWidget* stop) { return stop->accessibleName() == name; });
    };
    const auto tabs = placeOf([](QWidget* stop) { return qobject_cast<QTabBar*>(stop); });
    EXPECT_LT(named("Party"), tabs);
    EXPECT_LT(tabs, named("Gets hungry"));
    EXPECT_LT(named("Gets hungry"), named("Remove Firefox"));
    EXPECT_LT(named("Remove Firefox"), named("Sparrel"));
    EXPECT_EQ(static_cast<std::size_t>(named("Sparrel")), stops.size() - 1);
    EXPECT_GE(stops.size(), 11u);
    EXPECT_LE(stops.size(), 13u);
}

TEST_F(TheWindow, ShowsWhereTheKeyboardIsOnlyToWhomUsesIt) {
    show(everything());
    auto* toggle = all<QAbstractButton>().front();
    toggle->setFocus(Qt::MouseFocusReason);
    EXPECT_FALSE(ringIsSeen());
    press(Qt::Key_Tab);
    EXPECT_TRUE(ringIsSeen());
    QMouseEvent click(QEvent::MouseButtonPress, QPointF(3, 3), QPointF(3, 3), Qt::LeftButton,
                      Qt::LeftButton, {});
    QApplication::sendEvent(&window_, &click);
    EXPECT_FALSE(ringIsSeen());
}

TEST_F(TheWindow, ArrowsWalkTheSidebarAndKeysActOnSwitches) {
    show(everything());
    press(Qt::Key_Tab);
    while (QAccessible::queryAccessibleInterface(QApplication::focusWidget())->role() !=
           QAccessible::ListItem) {
        press(Qt::Key_Tab);
    }
    press(Qt::Key_Down);
    EXPECT_EQ(actions_.back(), (Action{"split", std::string("b")}));
    for (auto* button : all<QAbstractButton>()) {
        if (button->accessibleName() == "Gets hungry") button->setFocus();
    }
    press(Qt::Key_Space);
    EXPECT_EQ(actions_.back(), (Action{"toggle", false}));
}

TEST_F(TheWindow, ReturnAndSpaceFollowALink) {
    show(everything());
    for (auto* label : all<QLabel>()) {
        if (label->accessibleName() == "Somebody") label->setFocus(Qt::TabFocusReason);
    }
    press(Qt::Key_Return);
    press(Qt::Key_Space);
    EXPECT_EQ(actions_, (std::vector<Action>{{"link", {}}, {"link", {}}}));
}

TEST_F(TheWindow, KeysScrollAPageThatHasNothingToStopAt) {
    View page{.content = Form{}};
    for (int i = 0; i < 60; ++i) page.children.push_back({.content = Text{"line"}});
    show(page);
    auto* area = all<QScrollArea>().front();
    press(Qt::Key_PageDown);
    EXPECT_GT(area->verticalScrollBar()->value(), 100);
    press(Qt::Key_Home);
    EXPECT_EQ(area->verticalScrollBar()->value(), 0);
}

TEST_F(TheWindow, EscapeClosesIt) {
    show(everything());
    press(Qt::Key_Escape);
    EXPECT_EQ(closed_, 1);
    EXPECT_FALSE(window_.isVisible());
}

TEST_F(TheWindow, WhatIsTypedInTheListOfApplicationsPicksTheFirstThatFits) {
    show(everything());
    for (auto* button : all<QPushButton>()) {
        if (button->text() == "Add App…") button->click();
    }
    QCoreApplication::processEvents();
    auto* search = all<QLineEdit>().front();
    search->setText("VI");
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, {});
    QApplication::sendEvent(search, &enter);
    QCoreApplication::processEvents();
    ASSERT_FALSE(actions_.empty());
    EXPECT_EQ(actions_.back(), (Action{"add", std::vector<std::string>{"v"}}));
}

TEST_F(TheWindow, APageThatGoesAwayHandsTheKeyboardToNobody) {
    show(everything());
    for (auto* button : all<QAbstractButton>()) {
        if (button->accessibleName() == "Gets hungry") button->setFocus(Qt::MouseFocusReason);
    }
    show({.content = Split{"b"},
          .id = "split",
          .children = {{.content = SidebarRow{"Party"}, .id = "a"},
                       {.content = SidebarRow{"General"}, .id = "b"},
                       {.content = Form{}, .id = "other"}}});
    EXPECT_FALSE(ringIsSeen());
    const auto* focused = QApplication::focusWidget();
    EXPECT_TRUE(!focused || focused->accessibleName() != "Party");
}

TEST_F(TheWindow, TheKeyboardGoesOnWhenItsRowIsRemoved) {
    const auto row = [](const char* id) {
        return View{.content = Button{.title = "", .symbol = "minus.circle"},
                    .id = id,
                    .spoken = std::string("Remove ") + id};
    };
    const auto list = [](Views rows) {
        return View{.content = Form{},
                    .children = {{.content = Section{"Apps"}, .id = "s", .children = rows}}};
    };
    show(list({row("a"), row("b"), row("c")}));
    for (auto* button : all<QPushButton>()) {
        if (button->accessibleName() == "Remove b") button->setFocus(Qt::TabFocusReason);
    }
    show(list({row("a"), row("c")}));
    ASSERT_TRUE(QApplication::focusWidget());
    EXPECT_EQ(QApplication::focusWidget()->accessibleName(), "Remove c");
}

// Assistive programs
// --------------------------------------------------------------------------------

void walk(QAccessibleInterface* at, const std::function<void(QAccessibleInterface&)>& visit) {
    if (!at || at->state().invisible) return;
    visit(*at);
    for (int i = 0; i < at->childCount(); ++i) walk(at->child(i), visit);
}

TEST_F(TheWindow, EverythingThatCanBeUsedHasANameAndARole) {
    show(everything());
    int usable = 0;
    std::map<QString, QAccessible::Role> roles;
    walk(QAccessible::queryAccessibleInterface(&window_), [&](QAccessibleInterface& each) {
        const QString name = each.text(QAccessible::Name);
        if (each.role() != QAccessible::StaticText) roles.insert_or_assign(name, each.role());
        EXPECT_NE(each.role(), QAccessible::Border) << "which a bus takes for a window's frame";
        if (!each.state().focusable || each.role() == QAccessible::Window) return;
        ++usable;
        EXPECT_FALSE(name.isEmpty()) << "role " << each.role();
        EXPECT_NE(each.role(), QAccessible::NoRole);
        EXPECT_NE(each.role(), QAccessible::Client) << name.toStdString();
    });
    EXPECT_GE(usable, 12);
    EXPECT_EQ(roles["Gets hungry"], QAccessible::CheckBox);
    EXPECT_EQ(roles["Party"], QAccessible::ListItem);
    EXPECT_EQ(roles["Pages"], QAccessible::List);
    EXPECT_EQ(roles["Rules"], QAccessible::Grouping);
    EXPECT_EQ(roles["Quibbits"], QAccessible::Window);
    EXPECT_EQ(roles["Remove Firefox"], QAccessible::Button);
    EXPECT_EQ(roles["Sparrel"], QAccessible::Button);
    EXPECT_EQ(roles["Belly"], QAccessible::ProgressBar);
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(all<QComboBox>().front());
    const auto labels = list->relations(QAccessible::Label);
    ASSERT_FALSE(labels.isEmpty());
    EXPECT_EQ(labels.front().first->text(QAccessible::Name), "Region");
    EXPECT_EQ(list->text(QAccessible::Value), "Fernvale");
}

TEST_F(TheWindow, StatesAndValuesAreToldAndPressesHeard) {
    show(everything());
    QAccessibleInterface* toggle = nullptr;
    QString belly;
    walk(QAccessible::queryAccessibleInterface(&window_), [&](QAccessibleInterface& each) {
        if (each.text(QAccessible::Name) == "Gets hungry" && each.role() == QAccessible::CheckBox) {
            toggle = &each;
        }
        if (each.role() == QAccessible::ProgressBar) belly = each.text(QAccessible::Value);
    });
    EXPECT_EQ(belly, "42 %");
    ASSERT_NE(toggle, nullptr);
    EXPECT_TRUE(toggle->state().checked);
    EXPECT_EQ(toggle->text(QAccessible::Description), "Comes and asks.");
    toggle->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(actions_.back(), (Action{"toggle", false}));

    const auto named = [this](const QString& name) {
        QAccessibleInterface* found = nullptr;
        walk(QAccessible::queryAccessibleInterface(&window_), [&](QAccessibleInterface& each) {
            if (each.state().focusable && each.text(QAccessible::Name) == name) found = &each;
        });
        return found;
    };
    const auto press = [](QAccessibleInterface* what) {
        what->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    };
    QAccessibleInterface* segment = named("Y");
    ASSERT_NE(segment, nullptr);
    EXPECT_EQ(segment->role(), QAccessible::RadioButton);
    press(segment);
    EXPECT_EQ(actions_.back(), (Action{"segments", std::string("y")}));
    QAccessibleInterface* more = named("All natures");
    ASSERT_NE(more, nullptr);
    EXPECT_TRUE(more->state().collapsed);
    press(more);
    EXPECT_TRUE(more->state().expanded);
}

// Bad input --------------------------------------------------------------------------------------

TEST_F(TheWindow, OddContentsBreakNoPage) {
    const std::string odd = "a\0b\x01\xff\xfe<b>&\n" + std::string(3000, 'W');
    Preview broken{.size = {-5, 1e9}, .frames = {{7, {0, 0, 1, 1}}, {-1, {}}}, .frameTime = -1};
    View page{.content = Form{}};
    page.children = {
        {.content = Section{odd, odd}, .id = odd, .children = {{.content = Text{odd}}}},
        {.content = Fact{odd, odd, odd, odd}},
        {.content = Picture{.symbol = odd, .size = -4}},
        {.content = Meter{.title = odd, .amount = std::nan("")}},
        {.content = Stepper{"s", 1'000'000, 15, 10, 0}, .id = "s"},
        {.content = Picker{odd, {}, odd}, .id = "p"},
        {.content = Picker{odd, {}, odd, true}, .id = "q"},
        {.content = Chooser{odd, {{odd, odd, "../../etc/passwd"}, {"", "", "/dev/zero"}}},
         .id = "c"},
        {.content = Application{odd, "/nonexistent.png"}},
        {.content = Link{odd, odd}, .id = "l"},
        {.content = Dots{-3, 9}},
        {.content = broken},
        {.content = Grid{-1}, .children = {{.content = Text{"cell"}}}},
        {.content = TabView{99}, .id = "t"}};
    show(page);
    for (auto* button : all<QAbstractButton>()) {
        if (button->isVisible()) button->click();
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(window_.isVisible());
    EXPECT_GE(all<QWidget>().size(), 14);
}

// Sizes and colours ------------------------------------------------------------------------------

TEST(TheWindowsPlace, IsInsideWhateverTheScreenHasFree) {
    struct Row {
        QSize wanted;
        QRect room;
    };
    const QMargins frame(1, 24, 1, 5);
    for (const auto& [wanted, room] : std::vector<Row>{{{760, 680}, {0, 0, 1024, 560}},
                                                       {{640, 600}, {0, 30, 1024, 570}},
                                                       {{760, 680}, {0, 0, 1280, 690}},
                                                       {{760, 680}, {1920, 200, 960, 600}},
                                                       {{760, 680}, {0, 0, 1440, 900}}}) {
        const QRect place = placeFor(wanted, room, frame);
        EXPECT_TRUE(room.contains(place.marginsAdded(frame)));
        EXPECT_EQ(place.width(), wanted.width());
        EXPECT_EQ(place.height(), std::min(wanted.height(), room.height() - 29));
    }
}

TEST_F(TheWindow, IsNeverNarrowerThanItsPage) {
    View chain{.content = Line{}};
    for (int i = 0; i < 6; ++i) chain.children.push_back({.content = Column{90}});
    show({.content = Form{}, .children = {chain}});
    for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
    EXPECT_GE(window_.minimumSizeHint().width(), 6 * 90);
}

double luminance(const QColor& color) {
    const auto part = [](double v) {
        return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) +
           0.0722 * part(color.blueF());
}

double contrast(const QColor& one, const QColor& other) {
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

TEST(TheColours, StandOutByDayAndByNight) {
    for (const bool dark : {false, true}) {
        const QPalette colors = palette(dark);
        const auto of = [&](QPalette::ColorRole role) { return colors.color(role); };
        struct Row {
            const char* what;
            QColor ink, paper;
            double least;
        };
        for (const auto& [what, ink, paper, least] : std::vector<Row>{
                 {"text", of(QPalette::WindowText), of(QPalette::Base), 7},
                 {"small text", inkOf(colors, strengthOf(TextStyle::caption)), of(QPalette::Base),
                  4.5},
                 {"faint text", inkOf(colors, strengthOf(TextStyle::faint)), of(QPalette::Base),
                  3.5},
                 {"a chosen row", of(QPalette::HighlightedText), of(QPalette::Highlight), 4.5},
                 {"a switch that is off", of(QPalette::Dark), of(QPalette::Base), 3},
                 {"the scroll bar", of(QPalette::Dark), of(QPalette::Window), 3},
                 {"a disabled button", of(QPalette::PlaceholderText), of(QPalette::Button), 3},
                 {"what cannot be undone", warningInk(dark), of(QPalette::Button), 4.5},
                 {"the keyboard's ring", of(QPalette::Link), of(QPalette::Window), 3},
             }) {
            EXPECT_GE(contrast(ink, paper), least) << what << (dark ? " by night" : " by day");
        }
    }
}

TEST_F(TheWindow, FollowsWhenTheDesktopTurnsDark) {
    wear(window_, false);
    show({.content = Text{"Hello", TextStyle::caption}});
    auto* label = all<QLabel>().front();
    const auto before = label->palette().color(QPalette::WindowText);
    wear(window_, true);
    QCoreApplication::processEvents();
    EXPECT_NE(label->palette().color(QPalette::WindowText), before);
    EXPECT_GT(
        contrast(label->palette().color(QPalette::WindowText), palette(true).color(QPalette::Base)),
        4);
    wear(window_, false);
}

TEST_F(TheWindow, ShowsNoHeadingOverNothing) {
    const auto form = [](Views rows) {
        return View{.content = Form{},
                    .children = {{.content = Section{"Options"}, .id = "s", .children = rows}}};
    };
    const auto headingIsSeen = [this] {
        return std::ranges::any_of(all<QLabel>(), [](const QLabel* label) {
            return label->isVisible() && label->text() == "Options";
        });
    };
    show(form({}));
    EXPECT_FALSE(headingIsSeen());
    show(form({{.content = Text{"One"}}}));
    EXPECT_TRUE(headingIsSeen());
    show(form({}));
    EXPECT_FALSE(headingIsSeen());
}

TEST(PixelArt, KeepsAllColumnsEquallyWideInAnySize) {
    for (const int side : {24, 48, 80, 96, 160}) {
        for (int striped = 0; striped < 40; striped += 13) {
            QImage art(40, 40, QImage::Format_ARGB32_Premultiplied);
            art.fill(Qt::black);
            for (int y = 0; y < 40; ++y) art.setPixelColor(striped, y, Qt::white);
            const QImage shown = resized(art, {side, side});
            double white = 0;
            for (int x = 0; x < side; ++x) white += qRed(shown.pixel(x, side / 2)) / 255.0;
            EXPECT_NEAR(white, side / 40.0, 0.06 * side / 40.0 + 0.03) << side << " " << striped;
        }
    }
}

}  // namespace
}  // namespace quibbits::window
