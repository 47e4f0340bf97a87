// Items that arrange others.

#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollArea>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

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

/// Cells of one width, row by row, each row as high as its highest cell.
class EvenGrid final : public QLayout {
public:
    explicit EvenGrid(QWidget* parent) : QLayout(parent) { setContentsMargins(0, 0, 0, 0); }
    ~EvenGrid() override {
        while (QLayoutItem* each = EvenGrid::takeAt(0)) delete each;
    }
    double cellWidth = 200;

    void addItem(QLayoutItem* item) override { items_.push_back(item); }
    int count() const override { return static_cast<int>(items_.size()); }
    QLayoutItem* itemAt(int i) const override { return items_.value(i); }
    QLayoutItem* takeAt(int i) override {
        return i >= 0 && i < items_.size() ? items_.takeAt(i) : nullptr;
    }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override { return arrange({0, 0, width, 0}, false); }
    QSize sizeHint() const override { return minimumSize(); }
    QSize minimumSize() const override {
        return {static_cast<int>(cellWidth), heightForWidth(static_cast<int>(cellWidth))};
    }
    void setGeometry(const QRect& rect) override {
        QLayout::setGeometry(rect);
        arrange(rect, true);
    }

private:
    int arrange(const QRect& rect, bool moves) const {
        const int columns = std::max(1, static_cast<int>((rect.width() + gap) / (cellWidth + gap)));
        const int width = (rect.width() - gap * (columns - 1)) / columns;
        int y = rect.y();
        for (int first = 0; first < items_.size(); first += columns) {
            const int last = std::min<int>(first + columns, static_cast<int>(items_.size()));
            int height = 0;
            for (int i = first; i < last; ++i) {
                QLayoutItem* item = items_[i];
                height = std::max(height, item->hasHeightForWidth() ? item->heightForWidth(width)
                                                                    : item->sizeHint().height());
            }
            for (int i = first; moves && i < last; ++i) {
                items_[i]->setGeometry({rect.x() + (i - first) * (width + gap), y, width, height});
            }
            y += height + gap;
        }
        return items_.isEmpty() ? 0 : y - gap - rect.y();
    }

    QList<QLayoutItem*> items_;
};

class ColumnItem final : public Item {
public:
    explicit ColumnItem(Tell tell) : Item(std::move(tell)) {
        auto* box = new QVBoxLayout(this);
        box->setContentsMargins(0, 0, 0, 0);
        box->setSpacing(4);
    }
    void show(const views::View& view) override { fade(*this, view.opacity); }
    void place(const QList<Item*>& children) override {
        Item::place(children);
        const bool fills =
            std::ranges::any_of(children, [](const Item* child) { return child->takesRoom(); });
        if (!fills) static_cast<QVBoxLayout*>(layout())->addStretch(1);
    }
};

class LineItem final : public Item {
public:
    explicit LineItem(Tell tell) : Item(std::move(tell)) {
        auto* box = new QHBoxLayout(this);
        box->setContentsMargins(0, 0, 0, 0);
        box->setSpacing(gap);
    }
    void show(const views::View&) override {}
    void place(const QList<Item*>& children) override {
        Item::place(children);
        // What is a piece of the line stands in its middle.
        for (Item* child : children) layout()->setAlignment(child, Qt::AlignVCenter);
    }
};

class GridItem final : public Item {
public:
    explicit GridItem(Tell tell) : Item(std::move(tell)), grid_(new EvenGrid(this)) {
        QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
        policy.setHeightForWidth(true);
        setSizePolicy(policy);
    }
    void show(const views::View& view) override {
        grid_->cellWidth = view.as<views::Grid>()->cellWidth;
        grid_->invalidate();
    }

private:
    EvenGrid* grid_;
};

class FormItem final : public Item {
public:
    explicit FormItem(Tell tell) : Item(std::move(tell)) {
        auto* whole = new QVBoxLayout(this);
        whole->setContentsMargins(0, 0, 0, 0);
        auto* area = new QScrollArea(this);
        area->setWidgetResizable(true);
        area->setFrameShape(QFrame::NoFrame);
        area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
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
        heading_->say(section.heading);
        footer_->say(section.footer);
        setEnabled(view.enabled);
    }
    void place(const QList<Item*>& children) override {
        clear(*box_);
        qDeleteAll(std::exchange(lines_, {}));
        bool isFirst = true;
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
        title_->setCheckable(true);
        title_->setAutoRaise(true);
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

class CardItem final : public Item {
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
        opens_ = view.as<views::Card>()->opens;
        chevron_->setVisible(opens_);
        setFocusPolicy(opens_ ? Qt::TabFocus : Qt::NoFocus);
        setCursor(opens_ ? Qt::PointingHandCursor : Qt::ArrowCursor);
        fade(*this, view.opacity);
        update();
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
    void focusInEvent(QFocusEvent*) override { update(); }
    void focusOutEvent(QFocusEvent*) override { update(); }
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
        const bool raised = opens_ && (hovered_ || hasFocus());
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
            if constexpr (std::is_same_v<Kind, Line>) return new LineItem(std::move(tell));
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
