// Items that arrange others.

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLayout>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "EvenGrid.h"
#include "Kinds.h"
#include "Look.h"

namespace quibbits::window {
namespace {

constexpr int gap = 10;
constexpr int pageWidth = 720;  // wider lines are hard to read

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
            return nullptr;
        },
        view.content);
}

}  // namespace quibbits::window
