// Items that are only looked at.

#include <QBasicTimer>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QTimerEvent>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <utility>

#include "Accessible.h"
#include "Kinds.h"
#include "Look.h"
#include "Symbols.h"
#include "Words.h"

namespace quibbits::window {
namespace {

/// A length of something that fits a window, whatever was asked for.
int toPixels(double length) {
    return length > 0 ? static_cast<int>(std::min(length, 2000.0)) : 0;
}

/// A bar that is full up to its amount.
class Bar final : public QWidget, public Spoken {
public:
    explicit Bar(QWidget* parent) : QWidget(parent) {
        setFixedHeight(8);
        setMinimumWidth(80);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }
    QAccessible::Role spokenRole() const override { return QAccessible::ProgressBar; }
    std::optional<int> spokenPercentage() const override {
        return static_cast<int>(std::lround(amount_ * 100));
    }
    void show(double amount, const Color& tint) {
        amount_ = amount > 0 ? std::min(amount, 1.0) : 0;  // what is no number is nothing
        tint_ = tint;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().color(QPalette::Midlight));
        const QRectF whole(rect());
        painter.drawRoundedRect(whole, 4, 4);
        if (amount_ <= 0) return;
        painter.setBrush(tint_.alpha > 0 ? toColor(tint_) : palette().color(QPalette::Highlight));
        QRectF full = whole;
        full.setWidth(std::max(whole.width() * amount_, 8.0));
        painter.drawRoundedRect(full, 4, 4);
    }

private:
    double amount_ = 0;
    Color tint_;
};

class TextItem final : public Item {
public:
    explicit TextItem(Tell tell) : Item(std::move(tell)) {
        auto* box = new QVBoxLayout(this);
        box->setContentsMargins(0, 0, 0, 0);
        label_ = new Words(views::TextStyle::body, this);
        box->addWidget(label_);
    }
    void show(const views::View& view) override {
        const auto& one = *view.as<views::Text>();
        label_->setStyle(one.style);
        label_->say(one.text, one.strong);
        const int lines = static_cast<int>(std::clamp<std::int64_t>(one.mostLines, 0, 1000));
        if (lines > 0) label_->setMaximumHeight(lines * label_->fontMetrics().lineSpacing() + 2);
        const int least = static_cast<int>(std::clamp<std::int64_t>(one.leastLines, 0, 100));
        label_->setMinimumHeight(least * label_->fontMetrics().lineSpacing());
        if (least > 0) label_->setAlignment(Qt::AlignTop);
        if (one.selectable) {
            label_->setTextInteractionFlags(Qt::TextSelectableByMouse |
                                            Qt::TextSelectableByKeyboard);
        }
    }

    void centre() override { label_->setAlignment(Qt::AlignHCenter | Qt::AlignTop); }

private:
    Words* label_;
};

class FactItem final : public Item {
public:
    explicit FactItem(Tell tell) : Item(std::move(tell)) {
        auto* line = new QHBoxLayout(this);
        line->setContentsMargins(0, 0, 0, 0);
        line->setSpacing(symbolGap);
        symbol_ = new SymbolMark(symbolSide, QPalette::Link, this);
        title_ = new Words(views::TextStyle::body, this);
        detail_ = new Words(views::TextStyle::secondary, this);
        valueSymbol_ = new SymbolMark(valueSymbolSide, QPalette::Link, this);
        value_ = new QLabel(this);
        value_->setTextFormat(Qt::PlainText);
        value_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        auto* column = new QVBoxLayout;
        column->setSpacing(2);
        column->addWidget(title_);
        column->addWidget(detail_);
        line->addWidget(symbol_, 0, Qt::AlignTop);
        line->addLayout(column, 1);
        line->addWidget(valueSymbol_, 0, Qt::AlignVCenter);
        line->addWidget(value_, 0, Qt::AlignVCenter);
    }
    void show(const views::View& view) override {
        const auto& fact = *view.as<views::Fact>();
        symbol_->show(fact.symbol);
        hasSymbol_ = !fact.symbol.empty();
        title_->setStyle(fact.strong ? views::TextStyle::headline : views::TextStyle::body);
        title_->say(fact.title);
        detail_->say(fact.detail);
        valueSymbol_->show(fact.valueSymbol);
        value_->setText(text(fact.value));
        value_->setVisible(!fact.value.empty());
    }
    bool hasSymbol() const override { return hasSymbol_; }

private:
    static constexpr int symbolSide = 20;
    static constexpr int symbolGap = besideSymbols - symbolSide;
    static constexpr int valueSymbolSide = 14;
    bool hasSymbol_ = false;
    SymbolMark* symbol_;
    Words* title_;
    Words* detail_;
    SymbolMark* valueSymbol_;
    QLabel* value_;
};

class PictureItem final : public Item, public Spoken {
public:
    explicit PictureItem(Tell tell) : Item(std::move(tell)) {}
    void show(const views::View& view) override {
        const auto& one = *view.as<views::Picture>();
        image_ = toImage(one.image);
        if (one.drained) image_ = drained(std::move(image_));
        symbol_ = one.symbol;
        setAccessibleName(text(view.spoken));
        round_ = one.round;
        opacity_ = view.opacity;
        const int size = toPixels(one.size);
        setFixedSize(size, size);
        update();
    }

    /// One without a name only adorns what stands beside it.
    QAccessible::Role spokenRole() const override {
        return accessibleName().isEmpty() ? QAccessible::Whitespace : QAccessible::Graphic;
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setOpacity(opacity_);
        if (round_) {
            QPainterPath circle;
            circle.addEllipse(QRectF(rect()));
            painter.fillPath(circle, palette().color(QPalette::Midlight));
            painter.setClipPath(circle);
        }
        if (image_.isNull()) {
            const QColor ink = round_ ? inkOf(palette(), 0.5) : palette().color(QPalette::Link);
            const double inset = round_ ? width() * 0.26 : 1;
            drawSymbol(painter, QRectF(rect()).adjusted(inset, inset, -inset, -inset), symbol_,
                       ink);
            return;
        }
        painter.drawImage(rect(), resized(image_, (QSizeF(size()) * devicePixelRatioF()).toSize()));
    }

private:
    QImage image_;
    std::string symbol_;
    bool round_ = false;
    double opacity_ = 1;
};

class MeterItem final : public Item {
public:
    explicit MeterItem(Tell tell) : Item(std::move(tell)) {
        auto* line = new QHBoxLayout(this);
        line->setContentsMargins(0, 0, 0, 0);
        line->setSpacing(12);
        title_ = new QLabel(this);
        title_->setTextFormat(Qt::PlainText);
        title_->setMinimumWidth(150);
        bar_ = new Bar(this);
        value_ = new QLabel(this);
        line->addWidget(title_);
        line->addWidget(bar_, 1, Qt::AlignVCenter);
        line->addWidget(value_);
    }
    void show(const views::View& view) override {
        const auto& meter = *view.as<views::Meter>();
        title_->setText(text(meter.title));
        title_->setVisible(!meter.title.empty());
        value_->setText(text(meter.value));
        value_->setVisible(!meter.value.empty());
        bar_->setAccessibleName(text(view.spoken.empty() ? meter.title : view.spoken));
        bar_->show(meter.amount, meter.tint);
    }

private:
    QLabel* title_;
    Bar* bar_;
    QLabel* value_;
};

class ApplicationItem final : public Item {
public:
    explicit ApplicationItem(Tell tell) : Item(std::move(tell)) {
        auto* line = new QHBoxLayout(this);
        line->setContentsMargins(0, 0, 0, 0);
        icon_ = new QLabel(this);
        name_ = new QLabel(this);
        name_->setTextFormat(Qt::PlainText);
        line->addWidget(icon_);
        line->addWidget(name_, 1);
    }
    void show(const views::View& view) override {
        constexpr int size = 20;
        const auto& application = *view.as<views::Application>();
        const QIcon icon = iconNamed(application.icon);
        icon_->setPixmap(icon.pixmap(size, size));
        icon_->setVisible(!icon.isNull());
        name_->setText(text(application.name));
    }

private:
    QLabel* icon_;
    QLabel* name_;
};

class DotsItem final : public Item, public Spoken {
public:
    explicit DotsItem(Tell tell) : Item(std::move(tell)) {}
    void show(const views::View& view) override {
        dots_ = *view.as<views::Dots>();
        setFixedSize(std::max(static_cast<int>(dots_.count) * (width_ + space_) - space_, 0),
                     width_);
        setAccessibleName(QString("Page %1 of %2").arg(dots_.current + 1).arg(dots_.count));
        update();
    }

    QAccessible::Role spokenRole() const override { return QAccessible::StaticText; }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        for (int i = 0; i < dots_.count; ++i) {
            QColor ink = palette().color(QPalette::Highlight);
            if (i != dots_.current) {
                ink = inkOf(palette(), 0.72);
                ink.setAlphaF(0.3f);
            }
            painter.setBrush(ink);
            painter.drawEllipse(QRectF(i * (width_ + space_), 0, width_, width_));
        }
    }

private:
    static constexpr int width_ = 7;
    static constexpr int space_ = 7;
    views::Dots dots_;
};

class PreviewItem final : public Item, public Spoken {
public:
    explicit PreviewItem(Tell tell) : Item(std::move(tell)) {}
    void show(const views::View& view) override {
        preview_ = *view.as<views::Preview>();
        images_.clear();
        for (const Image& image : preview_.images) images_.push_back(toImage(image));
        setFixedSize(toPixels(preview_.size.width), toPixels(preview_.size.height));
        at_ = 0;
        drawn_ = {};
        run();
        update();
    }
    QAccessible::Role spokenRole() const override { return QAccessible::Animation; }

protected:
    void showEvent(QShowEvent*) override { run(); }
    void hideEvent(QHideEvent*) override { timer_.stop(); }
    void timerEvent(QTimerEvent*) override {
        if (preview_.frames.empty() || visibleRegion().isEmpty()) return;
        const auto before = preview_.frames[at_];
        at_ = (at_ + 1) % preview_.frames.size();
        if (!(preview_.frames[at_] == before)) update();
    }
    void paintEvent(QPaintEvent*) override {
        if (at_ >= preview_.frames.size()) return;
        const auto& frame = preview_.frames[at_];
        if (frame.image < 0 || frame.image >= images_.size()) return;
        const Rect& place = preview_.place;
        const QSize size = (QSizeF(place.width, place.height) * devicePixelRatioF()).toSize();
        if (!(drawnFrame_ == frame) || drawn_.size() != size) {
            const QImage& image = images_[frame.image];
            const QRectF part(frame.part.x * image.width(), frame.part.y * image.height(),
                              frame.part.width * image.width(), frame.part.height * image.height());
            drawn_ = resized(image.copy(part.toRect()), size);
            drawnFrame_ = frame;
        }
        QPainter painter(this);
        painter.drawImage(
            QRectF(place.x, height() - place.y - place.height, place.width, place.height), drawn_);
    }

private:
    void run() {
        const bool moves = isVisible() && preview_.frames.size() > 1 && preview_.frameTime > 0;
        if (!moves) return timer_.stop();
        timer_.start(std::max(static_cast<int>(std::lround(preview_.frameTime * 1000)), 10), this);
    }

    views::Preview preview_;
    QList<QImage> images_;
    std::size_t at_ = 0;
    QImage drawn_;  // of the frame below, in the size of the screen's pixels
    views::Preview::Frame drawnFrame_;
    QBasicTimer timer_;
};

class SpacerItem final : public Item {
public:
    explicit SpacerItem(Tell tell) : Item(std::move(tell)) {
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    }
    void show(const views::View&) override {}
};

}  // namespace

Item* makeLeaf(const views::View& view, Tell tell) {
    using namespace views;
    return std::visit(
        [&]<typename Kind>(const Kind&) -> Item* {
            if constexpr (std::is_same_v<Kind, Text>) return new TextItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Fact>) return new FactItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Picture>) return new PictureItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Meter>) return new MeterItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Application>)
                return new ApplicationItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Dots>) return new DotsItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Preview>) return new PreviewItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Spacer>) return new SpacerItem(std::move(tell));
            return nullptr;
        },
        view.content);
}

Item* Item::make(const views::View& view, Tell tell) {
    for (const auto make : {makeBox, makeFrame, makePages, makeControl, makeDialog, makeLeaf}) {
        if (Item* item = make(view, tell)) return item;
    }
    return nullptr;
}

}  // namespace quibbits::window
