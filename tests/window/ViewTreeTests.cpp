// Real widgets, on a screen that is only memory.

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>
#include <QToolButton>
#include <memory>

#include "window/ViewTree.h"
#include "window/Words.h"

namespace quibbits::window {
namespace {

using namespace views;

/// The toolkit, which must be gone before the program's statics are.
class Toolkit final : public testing::Environment {
public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application_ = std::make_unique<QApplication>(count_, arguments_);
    }
    void TearDown() override { application_.reset(); }

private:
    int count_ = 1;
    char name_[5] = "test";
    char* arguments_[2] = {name_, nullptr};
    std::unique_ptr<QApplication> application_;
};
const auto* const toolkit = testing::AddGlobalTestEnvironment(new Toolkit);

class Windows : public testing::Test {
protected:
    ~Windows() override { delete tree_.top(); }

    void show(View view) {
        if (tree_.show(std::move(view))) tree_.top()->resize(500, 300);
        tree_.top()->QWidget::show();
        QCoreApplication::processEvents();
    }
    template <typename Widget>
    QList<Widget*> all() {
        return tree_.top()->findChildren<Widget*>();
    }
    static View form(Views rows) {
        return {.content = Form{},
                .children = {{.content = Section{"Rows"}, .id = "s", .children = std::move(rows)}}};
    }
    static View toggle(const std::string& id, bool on, bool enabled = true) {
        return {.content = Toggle{.title = id, .isOn = on}, .id = id, .enabled = enabled};
    }

    std::vector<Action> actions_;
    ViewTree tree_{[this](const Action& action) { actions_.push_back(action); }};
};

TEST_F(Windows, ControlsTellWhatTheUserDid) {
    show(form({toggle("switch", false),
               {.content = Button{"Press"}, .id = "button"},
               {.content = Picker{"Pick", {{"a", "A"}, {"b", "B"}}, "a"}, .id = "picker"},
               {.content = Picker{"Seg", {{"x", "X"}, {"y", "Y"}}, "x", true}, .id = "segments"},
               {.content = Stepper{"Step", 30, 15, 45, 15}, .id = "stepper"}}));
    for (auto* button : all<QAbstractButton>()) {
        if (button->isVisible()) button->click();
    }
    auto* list = all<QComboBox>().front();
    list->setCurrentIndex(1);
    emit list->activated(1);
    const std::vector<Action> expected{{"switch", true},
                                       {"button", {}},
                                       {"segments", std::string("x")},
                                       {"segments", std::string("y")},
                                       {"stepper", std::int64_t{15}},
                                       {"stepper", std::int64_t{45}},
                                       {"picker", std::string("b")}};
    EXPECT_TRUE(std::ranges::is_permutation(actions_, expected)) << actions_.size();
}

TEST_F(Windows, AnUpdateKeepsTheWidgetsThatStay) {
    show(form({toggle("one", false), toggle("two", false)}));
    const auto before = all<QAbstractButton>();
    show(form({toggle("new", true), toggle("one", true), toggle("two", false, false)}));
    const auto after = all<QAbstractButton>();
    EXPECT_EQ(after.size(), 3);
    EXPECT_TRUE(after.contains(before[0]));
    EXPECT_TRUE(before[0]->isChecked());
    EXPECT_FALSE(before[1]->isEnabled());
    show(form({toggle("two", true)}));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(all<QAbstractButton>(), QList<QAbstractButton*>{before[1]});
    EXPECT_TRUE(before[1]->isEnabled());
    EXPECT_TRUE(actions_.empty()) << "an update is nothing that the user did";
}

TEST_F(Windows, AFormStaysScrolledThroughAnUpdate) {
    Views rows;
    for (int i = 0; i < 40; ++i) rows.push_back(toggle("t" + std::to_string(i), false));
    show(form(rows));
    auto* bar = all<QScrollBar>().front();
    for (auto* each : all<QScrollBar>()) {
        if (each->maximum() > bar->maximum()) bar = each;
    }
    ASSERT_GT(bar->maximum(), 100);
    bar->setValue(100);
    rows[20] = toggle("t20", true);
    show(form(rows));
    EXPECT_EQ(bar->value(), 100);
}

TEST_F(Windows, TabsAndRowsTurnThePage) {
    const auto tree = [](std::int64_t chosen) {
        View tabs{.content = TabView{chosen}, .id = "tabs"};
        for (const char* name : {"One", "Two"}) {
            tabs.children.push_back(
                {.content = Tab{name, "bolt"}, .id = name, .children = {{.content = Text{name}}}});
        }
        return View{.content = Split{"a"},
                    .id = "split",
                    .children = {{.content = SidebarRow{"A"}, .id = "a"},
                                 {.content = SidebarRow{"B"}, .id = "b"},
                                 tabs}};
    };
    show(tree(0));
    auto* bar = all<QTabBar>().front();
    EXPECT_EQ(bar->count(), 2);
    bar->setCurrentIndex(1);
    EXPECT_EQ(actions_, (std::vector<Action>{{"tabs", std::int64_t{1}}}));
    show(tree(1));
    for (auto* label : all<QLabel>()) {
        const bool ofAPage = label->text() == "One" || label->text() == "Two";
        EXPECT_TRUE(!ofAPage || label->isVisible() == (label->text() == "Two"));
    }
    EXPECT_EQ(actions_.size(), 1u);
}

TEST(AText, HasTheRoomThatItsLinesTake) {
    QWidget page;
    for (const char* words : {"Once",
                              "Comes right up to the glass, licks it with its tongue (Lick) "
                              "and leaves a wet smear that drips and fades.",
                              "One line\nand another"}) {
        for (const TextStyle style : {TextStyle::title, TextStyle::caption}) {
            Words text(style, &page);
            QLabel usual(&page);
            usual.setWordWrap(true);
            usual.setTextFormat(Qt::PlainText);
            usual.setFont(text.font());
            const auto isAsUsual = [&](const char* what) {
                text.say(what);
                usual.setText(what);
                for (int width = 60; width < 900; ++width) {
                    if (text.heightForWidth(width) != usual.heightForWidth(width)) return false;
                }
                return true;
            };
            EXPECT_TRUE(isAsUsual(words)) << words;
            EXPECT_TRUE(isAsUsual("Something else altogether that is somewhat longer"));
            EXPECT_LE(text.minimumSizeHint().width(), text.sizeHint().width());
        }
    }
}

TEST_F(Windows, TextsAreShownAsTheyAre) {
    show(form({{.content = Text{"<b>not bold</b>"}},
               {.content = Fact{.title = "<i>", .detail = "a & b", .value = "&&"}}}));
    int plain = 0;
    for (auto* label : all<QLabel>()) plain += label->textFormat() == Qt::PlainText;
    EXPECT_GE(plain, 4);
}

}  // namespace
}  // namespace quibbits::window
