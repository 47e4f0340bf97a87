// Items with a frame or a title round others.

#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "Accessible.h"
#include "Kinds.h"
#include "Look.h"
#include "Symbols.h"
#include "Words.h"

namespace quibbits::window {
namespace {

class SectionItem final : public Item, public Spoken {
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
    QAccessible::Role spokenRole() const override { return QAccessible::Grouping; }
    void show(const views::View& view) override {
        const auto& section = *view.as<views::Section>();
        setAccessibleName(text(section.heading));
        heading_->say(section.heading);
        nameIt();
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
        isEmpty_ = children.isEmpty();
        nameIt();
    }

private:
    /// A heading over nothing would only puzzle.
    void nameIt() { heading_->setVisible(!isEmpty_ && !heading_->text().isEmpty()); }

    bool isEmpty_ = true;
    Words* heading_;
    QFrame* frame_;
    QVBoxLayout* box_;
    Words* footer_;
    QList<QWidget*> lines_;
};

/// With an arrow to the right while it is closed, and down while it is open, where its neighbours
/// have their symbols.
class DisclosureTitle final : public QToolButton, public Spoken {
public:
    explicit DisclosureTitle(QWidget* parent) : QToolButton(parent) {
        setCheckable(true);
        setFocusPolicy(Qt::StrongFocus);
        setCursor(Qt::PointingHandCursor);
    }
    QAccessible::Role spokenRole() const override { return QAccessible::Button; }
    std::optional<bool> isSpokenOpen() const override { return isChecked(); }
    void pressBySpeech() override { click(); }
    QSize sizeHint() const override {
        return {besideSymbols + fontMetrics().horizontalAdvance(text()) + 4,
                fontMetrics().height() + 6};
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(
            QPen(palette().color(QPalette::Link), 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.save();
        painter.translate(10, height() / 2.0);
        if (isChecked()) painter.rotate(90);
        painter.drawPolyline(QPolygonF({{-2, -4}, {2, 0}, {-2, 4}}));
        painter.restore();
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(rect().adjusted(besideSymbols, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft,
                         text());
    }
};

class DisclosureItem final : public Item {
public:
    explicit DisclosureItem(Tell tell) : Item(std::move(tell)) {
        auto* whole = new QVBoxLayout(this);
        whole->setContentsMargins(0, 0, 0, 0);
        title_ = new DisclosureTitle(this);
        content_ = new QWidget(this);
        box_ = new QVBoxLayout(content_);
        box_->setContentsMargins(besideSymbols, 0, 0, 0);
        content_->hide();
        whole->addWidget(title_);
        whole->addWidget(content_);
        connect(title_, &QToolButton::toggled, content_, &QWidget::setVisible);
    }
    void show(const views::View& view) override {
        title_->setText(text(view.as<views::Disclosure>()->title));
        title_->setAccessibleName(title_->text());
    }
    void place(const QList<Item*>& children) override {
        clear(*box_);
        for (Item* child : children) box_->addWidget(child);
    }

private:
    DisclosureTitle* title_;
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
        chevron_ = new SymbolMark(12, QPalette::WindowText, this);
        chevron_->show("chevron.right");
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
    SymbolMark* chevron_;
    bool opens_ = false;
    bool hovered_ = false;
};

}  // namespace

Item* makeFrame(const views::View& view, Tell tell) {
    if (view.as<views::Section>()) return new SectionItem(std::move(tell));
    if (view.as<views::Disclosure>()) return new DisclosureItem(std::move(tell));
    if (view.as<views::Card>()) return new CardItem(std::move(tell));
    return nullptr;
}

}  // namespace quibbits::window
