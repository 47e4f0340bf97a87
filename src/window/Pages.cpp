// Items that show one page at a time, or a page beside what chooses it.

#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTabBar>
#include <QVBoxLayout>
#include <utility>

#include "Accessible.h"
#include "Kinds.h"
#include "Look.h"
#include "Symbols.h"

namespace quibbits::window {
namespace {

constexpr int sidebarWidth = 180;  // the longest name of a creature fits

class TabItem final : public Item {
public:
    explicit TabItem(Tell tell) : Item(std::move(tell)) {
        auto* box = new QVBoxLayout(this);
        box->setContentsMargins(0, 0, 0, 0);
    }
    void show(const views::View& view) override {
        const auto& tab = *view.as<views::Tab>();
        title = QString::fromStdString(tab.title);
        symbol = tab.symbol;
    }
    QString title;
    std::string symbol;
};

class TabViewItem final : public Item {
public:
    explicit TabViewItem(Tell tell) : Item(std::move(tell)) {
        auto* whole = new QVBoxLayout(this);
        whole->setContentsMargins(0, 10, 0, 0);
        whole->setSpacing(0);
        bar_ = new QTabBar(this);
        bar_->setDrawBase(false);
        bar_->setAccessibleName("Parts of the page");
        bar_->setExpanding(false);
        whole->addWidget(bar_, 0, Qt::AlignHCenter);
        whole->addSpacing(8);
        pages_ = new QVBoxLayout;
        whole->addLayout(pages_, 1);
        connect(bar_, &QTabBar::currentChanged, this, [this](int index) {
            if (!following_ && index >= 0) act(std::int64_t{index});
        });
    }
    void show(const views::View& view) override {
        keepIdentity(view);
        chosen_ = static_cast<int>(view.as<views::TabView>()->chosen);
        follow();
    }
    void place(const QList<Item*>& children) override {
        clear(*pages_);
        tabs_.clear();
        for (Item* child : children) {
            if (auto* tab = dynamic_cast<TabItem*>(child)) {
                pages_->addWidget(tab, 1);
                tabs_.push_back(tab);
            }
        }
        follow();
    }

private:
    void follow() {
        following_ = true;
        while (bar_->count() > tabs_.size()) bar_->removeTab(bar_->count() - 1);
        for (int i = 0; i < tabs_.size(); ++i) {
            if (i >= bar_->count()) bar_->addTab(QString());
            bar_->setTabText(i, tabs_[i]->title);
            bar_->setTabIcon(i, symbolIcon(tabs_[i]->symbol));
            tabs_[i]->setVisible(i == chosen_);
        }
        bar_->setCurrentIndex(chosen_);
        following_ = false;
    }

public:
    bool takesRoom() const override { return true; }

private:
    QTabBar* bar_;
    QVBoxLayout* pages_;
    QList<TabItem*> tabs_;
    int chosen_ = 0;
    bool following_ = false;
};

class SidebarRowItem final : public Item, public Spoken {
public:
    explicit SidebarRowItem(Tell tell) : Item(std::move(tell)) {
        setFixedHeight(34);
        setFocusPolicy(Qt::TabFocus);
    }
    std::function<void()> onChosen;
    std::function<void(int by)> onStep;  // to a neighbour
    bool startsGroup = false;
    std::string id;

    void show(const views::View& view) override {
        const auto& row = *view.as<views::SidebarRow>();
        id = view.id;
        title_ = QString::fromStdString(row.title);
        symbol_ = row.symbol;
        picture_ = toImage(row.picture);
        startsGroup = row.startsGroup;
        setAccessibleName(title_);
        update();
    }
    void setChosen(bool chosen) {
        chosen_ = chosen;
        update();
    }
    QAccessible::Role spokenRole() const override { return QAccessible::ListItem; }
    bool isSpokenSelected() const override { return chosen_; }
    void pressBySpeech() override { choose(); }

protected:
    void mousePressEvent(QMouseEvent*) override { choose(); }
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Down || event->key() == Qt::Key_Up) {
            if (onStep) onStep(event->key() == Qt::Key_Down ? 1 : -1);
        } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Space ||
                   event->key() == Qt::Key_Enter) {
            choose();
        } else {
            Item::keyPressEvent(event);
        }
    }
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF body = QRectF(rect()).adjusted(1, 1, -1, -1);
        if (chosen_) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(palette().color(QPalette::Highlight));
            painter.drawRoundedRect(body, 7, 7);
        }
        painter.setPen(palette().color(chosen_ ? QPalette::HighlightedText : QPalette::WindowText));
        const QRect icon(8, 5, 24, 24);
        if (picture_.isNull()) {
            drawSymbol(painter, icon.adjusted(4, 4, -4, -4), symbol_, painter.pen().color());
        } else {
            QPainterPath square;
            square.addRoundedRect(QRectF(icon), 5, 5);
            painter.setClipPath(square);
            const double ratio = devicePixelRatioF();
            painter.drawImage(icon, resized(picture_, (QSizeF(icon.size()) * ratio).toSize()));
            painter.setClipping(false);
        }
        const QRect words = rect().adjusted(38, 0, -4, 0);
        painter.drawText(words, Qt::AlignVCenter | Qt::AlignLeft,
                         fontMetrics().elidedText(title_, Qt::ElideRight, words.width()));
    }

private:
    void choose() const {
        if (onChosen) onChosen();
    }

    QString title_;
    std::string symbol_;
    QImage picture_;
    bool chosen_ = false;
};

class SplitItem final : public Item {
public:
    explicit SplitItem(Tell tell) : Item(std::move(tell)) {
        auto* whole = new QHBoxLayout(this);
        whole->setContentsMargins(0, 0, 0, 0);
        whole->setSpacing(0);
        auto* side = new QFrame(this);
        side->setObjectName("sidebar");
        side->setFixedWidth(sidebarWidth);
        side->setAccessibleName("Pages");
        rows_ = new QVBoxLayout(side);
        rows_->setContentsMargins(8, 14, 8, 14);
        rows_->setSpacing(2);
        whole->addWidget(side);
        detail_ = new QVBoxLayout;
        whole->addLayout(detail_, 1);
    }
    void show(const views::View& view) override {
        keepIdentity(view);
        chosen_ = view.as<views::Split>()->chosen;
        follow();
    }
    void place(const QList<Item*>& children) override {
        clear(*rows_);
        clear(*detail_);
        list_.clear();
        for (Item* child : children) {
            auto* row = dynamic_cast<SidebarRowItem*>(child);
            if (!row) {
                detail_->addWidget(child, 1);
                child->setVisible(true);
                continue;
            }
            row->onChosen = [this, row] { act(row->id); };
            row->onStep = [this, row](int by) {
                const auto next = list_.indexOf(row) + by;
                if (next >= 0 && next < list_.size()) {
                    list_[next]->setFocus(Qt::TabFocusReason);
                    act(list_[next]->id);
                }
            };
            if (row->startsGroup) rows_->addSpacing(14);
            rows_->addWidget(row);
            list_.push_back(row);
        }
        rows_->addStretch(1);
        follow();
    }

private:
    void follow() {
        for (SidebarRowItem* row : list_) {
            row->setChosen(row->id == chosen_);
            // One stop for Tab: the arrows walk the list.
            row->setFocusPolicy(row->id == chosen_ || chosen_.empty() ? Qt::TabFocus
                                                                      : Qt::ClickFocus);
        }
    }

    QVBoxLayout* rows_;
    QVBoxLayout* detail_;
    QList<SidebarRowItem*> list_;
    std::string chosen_;
};

class PagedItem final : public Item {
public:
    explicit PagedItem(Tell tell) : Item(std::move(tell)) {
        box_ = new QVBoxLayout(this);
        box_->setContentsMargins(0, 0, 0, 0);
        box_->setSpacing(0);
        line_ = new QFrame(this);
        line_->setObjectName("hairline");
        line_->setFixedHeight(1);
    }
    void show(const views::View&) override {}
    void place(const QList<Item*>& children) override {
        clear(*box_);
        for (Item* child : children) {
            const bool bar = child == children.back() && children.size() > 1;
            if (bar) {
                box_->addWidget(line_);
                child->setContentsMargins(20, 12, 20, 12);
            }
            box_->addWidget(child, bar ? 0 : 1);
            child->setVisible(true);
        }
    }

private:
    QVBoxLayout* box_;
    QFrame* line_;
};

}  // namespace

Item* makePages(const views::View& view, Tell tell) {
    return std::visit(
        [&]<typename Kind>(const Kind&) -> Item* {
            using namespace views;
            if constexpr (std::is_same_v<Kind, TabView>) return new TabViewItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Tab>) return new TabItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Split>) return new SplitItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, SidebarRow>)
                return new SidebarRowItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Paged>) return new PagedItem(std::move(tell));
            return nullptr;
        },
        view.content);
}

}  // namespace quibbits::window
