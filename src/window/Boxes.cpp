// Items that arrange others.

#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "Accessible.h"
#include "EvenGrid.h"
#include "Kinds.h"
#include "Look.h"
#include "Symbols.h"
#include "Words.h"

namespace quibbits::window {
namespace {

constexpr int gap = 10;
constexpr int pageWidth = 720;  // wider lines are hard to read

void fade(QWidget& widget, double opacity) {
    QGraphicsOpacityEffect* effect = nullptr;
    if (opacity < 1) {
        effect = new QGraphicsOpacityEffect(&widget);
        effect->setOpacity(opacity);
    }
    widget.setGraphicsEffect(effect);  // the former one goes
}

class ColumnItem final : public Item {
public:
    explicit ColumnItem(Tell tell) : Item(std::move(tell)) {
        auto* box = new QVBoxLayout(this);
        box->setContentsMargins(0, 0, 0, 0);
        box->setSpacing(4);
    }
    void show(const views::View& view) override {
        fade(*this, view.opacity);
        const int width = static_cast<int>(view.as<views::Column>()->centredWidth);
        if (width > 0) setFixedWidth(width);
        isCentred_ = width > 0;
        centre();
    }
    void place(const QList<Item*>& children) override {
        Item::place(children);
        children_ = children;
        centre();
        if (isCentred_) return;
        const bool fills =
            std::ranges::any_of(children, [](const Item* child) { return child->takesRoom(); });
        if (!fills) static_cast<QVBoxLayout*>(layout())->addStretch(1);
    }

private:
    void centre() override {
        if (!isCentred_) return;
        for (Item* child : children_) {
            child->centre();
            const bool isNarrow = child->maximumWidth() < QWIDGETSIZE_MAX;
            layout()->setAlignment(child, isNarrow ? Qt::AlignHCenter : Qt::Alignment());
        }
    }

    QList<Item*> children_;
    bool isCentred_ = false;
};

class LineItem final : public Item {
public:
    LineItem(Tell tell, bool balanced) : Item(std::move(tell)) {
        if (balanced) {
            grid_ = new QGridLayout(this);
            grid_->setColumnStretch(0, 1);
            grid_->setColumnStretch(2, 1);
        } else {
            auto* box = new QHBoxLayout(this);
            box->setSpacing(gap);
        }
        layout()->setContentsMargins(0, 0, 0, 0);
    }
    void show(const views::View&) override {}
    void place(const QList<Item*>& children) override {
        if (grid_) return balance(children);
        Item::place(children);
        // What is a piece of the line stands in its middle.
        for (Item* child : children) layout()->setAlignment(child, Qt::AlignVCenter);
    }

private:
    void balance(const QList<Item*>& children) {
        clear(*grid_);
        constexpr Qt::Alignment sides[]{Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
        int widest = 0;
        for (int i = 0; i < children.size(); ++i) {
            grid_->addWidget(children[i], 0, i, sides[std::min(i, 2)] | Qt::AlignVCenter);
            children[i]->setVisible(true);
            if (i != 1) widest = std::max(widest, children[i]->sizeHint().width());
        }
        for (const int side : {0, 2}) grid_->setColumnMinimumWidth(side, widest);
    }

    QGridLayout* grid_ = nullptr;
};

class GridItem final : public Item {
public:
    explicit GridItem(Tell tell) : Item(std::move(tell)), grid_(new EvenGrid(this)) {
        QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
        policy.setHeightForWidth(true);
        setSizePolicy(policy);
    }
    void show(const views::View& view) override {
        grid_->setCellWidth(view.as<views::Grid>()->cellWidth);
    }

private:
    EvenGrid* grid_;
};

/// Never so narrow that its page would be cut, and with a line along its upper edge while something
/// is scrolled under it.
class PageArea final : public QScrollArea {
public:
    explicit PageArea(QWidget* parent) : QScrollArea(parent) {
        setWidgetResizable(true);
        setFrameShape(QFrame::NoFrame);
        setFocusPolicy(Qt::NoFocus);  // the window's keys scroll it
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        edge_ = new QFrame(this);
        edge_->setObjectName("hairline");
        edge_->hide();
        connect(verticalScrollBar(), &QScrollBar::valueChanged, edge_,
                [this](int value) { edge_->setVisible(value > 0); });
    }
    QSize minimumSizeHint() const override {
        const int page = widget() ? widget()->minimumSizeHint().width() : 0;
        return {page + verticalScrollBar()->sizeHint().width(), 120};
    }

protected:
    void resizeEvent(QResizeEvent* event) override {
        QScrollArea::resizeEvent(event);
        edge_->setGeometry(0, 0, width(), 1);
        edge_->raise();
    }
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::LayoutRequest) updateGeometry();
        return QScrollArea::eventFilter(object, event);
    }

private:
    QFrame* edge_;
};

class FormItem final : public Item {
public:
    explicit FormItem(Tell tell) : Item(std::move(tell)) {
        auto* whole = new QVBoxLayout(this);
        whole->setContentsMargins(0, 0, 0, 0);
        auto* area = new PageArea(this);
        whole->addWidget(area);
        auto* page = new QWidget(area);
        auto* centred = new QHBoxLayout(page);
        centred->setContentsMargins(24, 20, 24, 20);
        inner_ = new QWidget(page);
        inner_->setMaximumWidth(pageWidth);
        centred->addWidget(inner_);
        box_ = new QVBoxLayout(inner_);
        box_->setContentsMargins(0, 0, 0, 0);
        box_->setSpacing(14);
        area->setWidget(page);
    }
    void show(const views::View&) override {}
    void place(const QList<Item*>& children) override {
        clear(*box_);
        for (Item* child : children) box_->addWidget(child);
        box_->addStretch(1);
    }
    bool takesRoom() const override { return true; }

private:
    QWidget* inner_;
    QVBoxLayout* box_;
};

class SectionItem final : public Item {
public:
    explicit SectionItem(Tell tell) : Item(std::move(tell)) {
        auto* whole = new QVBoxLayout(this);
        whole->setContentsMargins(0, 0, 0, 0);
        whole->setSpacing(6);
        heading_ = new Words(views::TextStyle::headline, this);
        frame_ = new QFrame(this);
        frame_->setObjectName("section");
        frame_->hide();  // empty
        box_ = new QVBoxLayout(frame_);
        box_->setContentsMargins(14, 12, 14, 12);
        box_->setSpacing(0);
        footer_ = new Words(views::TextStyle::caption, this);
        whole->addWidget(heading_);
        whole->addWidget(frame_);
        whole->addWidget(footer_);
    }
    void show(const views::View& view) override {
        const auto& section = *view.as<views::Section>();
        setAccessibleName(text(section.heading));
        heading_->say(section.heading);
        footer_->say(section.footer);
        setEnabled(view.enabled);
    }
    void place(const QList<Item*>& children) override {
        clear(*box_);
        qDeleteAll(std::exchange(lines_, {}));
        bool isFirst = true;
        const bool indents =
            std::ranges::any_of(children, [](const Item* child) { return child->hasSymbol(); });
        for (Item* child : children) {
            if (child->isShownInPlace() && !std::exchange(isFirst, false)) {
                auto* line = new QFrame(frame_);
                line->setObjectName("hairline");
                line->setFixedHeight(1);
                lines_.push_back(line);
                box_->addSpacing(9);
                box_->addWidget(line);
                box_->addSpacing(9);
            }
            box_->addWidget(child);
            child->setVisible(true);
            child->alignWithSymbols(indents);
        }
        frame_->setVisible(!children.isEmpty());
    }

private:
    Words* heading_;
    QFrame* frame_;
    QVBoxLayout* box_;
    Words* footer_;
    QList<QWidget*> lines_;
};

class DisclosureItem final : public Item {
public:
    explicit DisclosureItem(Tell tell) : Item(std::move(tell)) {
        auto* whole = new QVBoxLayout(this);
        whole->setContentsMargins(0, 0, 0, 0);
        title_ = new QToolButton(this);
        title_->setObjectName("disclosure");
        title_->setCheckable(true);
        title_->setFocusPolicy(Qt::StrongFocus);
        title_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        title_->setArrowType(Qt::RightArrow);
        content_ = new QWidget(this);
        box_ = new QVBoxLayout(content_);
        box_->setContentsMargins(20, 0, 0, 0);
        content_->hide();
        whole->addWidget(title_);
        whole->addWidget(content_);
        connect(title_, &QToolButton::toggled, this, [this](bool open) {
            title_->setArrowType(open ? Qt::DownArrow : Qt::RightArrow);
            content_->setVisible(open);
        });
    }
    void show(const views::View& view) override {
        title_->setText(QString::fromStdString(view.as<views::Disclosure>()->title));
    }
    void place(const QList<Item*>& children) override {
        clear(*box_);
        for (Item* child : children) box_->addWidget(child);
    }

private:
    QToolButton* title_;
    QWidget* content_;
    QVBoxLayout* box_;
};

class CardItem final : public Item, public Spoken {
public:
    explicit CardItem(Tell tell) : Item(std::move(tell)) {
        auto* whole = new QHBoxLayout(this);
        whole->setContentsMargins(12, 10, 12, 10);
        whole->setSpacing(12);
        box_ = new QHBoxLayout;
        whole->addLayout(box_, 1);
        chevron_ = new Words(views::TextStyle::title, this);
        chevron_->setText("›");
        whole->addWidget(chevron_);
    }
    void show(const views::View& view) override {
        keepIdentity(view);
        setAccessibleName(text(view.spoken));
        opens_ = view.as<views::Card>()->opens;
        chevron_->setVisible(opens_);
        setFocusPolicy(opens_ ? Qt::TabFocus : Qt::NoFocus);
        setCursor(opens_ ? Qt::PointingHandCursor : Qt::ArrowCursor);
        fade(*this, view.opacity);
        update();
    }
    QAccessible::Role spokenRole() const override {
        return opens_ ? QAccessible::Button : QAccessible::Grouping;
    }
    void pressBySpeech() override {
        if (opens_) act();
    }
    void place(const QList<Item*>& children) override {
        clear(*box_);
        for (Item* child : children) {
            // What has words takes the room; a picture stays at the top.
            const bool last = child == children.back();
            box_->addWidget(child, last ? 1 : 0, last ? Qt::Alignment() : Qt::AlignTop);
        }
    }

protected:
    void enterEvent(QEnterEvent*) override { setHovered(true); }
    void leaveEvent(QEvent*) override { setHovered(false); }
    void mouseReleaseEvent(QMouseEvent* event) override {
        if (opens_ && event->button() == Qt::LeftButton && rect().contains(event->pos())) act();
    }
    void keyPressEvent(QKeyEvent* event) override {
        const bool chooses = event->key() == Qt::Key_Return || event->key() == Qt::Key_Space ||
                             event->key() == Qt::Key_Enter;
        if (opens_ && chooses) return act();
        Item::keyPressEvent(event);
    }
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const bool raised = opens_ && hovered_;
        painter.setPen(QPen(palette().color(raised ? QPalette::Highlight : QPalette::Mid), 1));
        painter.setBrush(palette().color(raised ? QPalette::AlternateBase : QPalette::Base));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 9, 9);
    }

private:
    void setHovered(bool hovered) {
        hovered_ = hovered;
        update();
    }

    QHBoxLayout* box_;
    QLabel* chevron_;
    bool opens_ = false;
    bool hovered_ = false;
};

}  // namespace

void Item::place(const QList<Item*>& children) {
    QLayout* box = layout();
    if (!box) return;
    clear(*box);
    for (Item* child : children) {
        box->addWidget(child);
        child->setVisible(true);
    }
}

Item* makeBox(const views::View& view, Tell tell) {
    return std::visit(
        [&]<typename Kind>(const Kind&) -> Item* {
            using namespace views;
            if constexpr (std::is_same_v<Kind, Column>) return new ColumnItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Line>) {
                return new LineItem(std::move(tell), std::get<Line>(view.content).balanced);
            }
            if constexpr (std::is_same_v<Kind, Grid>) return new GridItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Form>) return new FormItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Section>) return new SectionItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Disclosure>)
                return new DisclosureItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Card>) return new CardItem(std::move(tell));
            return nullptr;
        },
        view.content);
}

}  // namespace quibbits::window
