// Items that stand alone: texts, switches, buttons, pictures.

#include <QAbstractButton>
#include <QBasicTimer>
#include <QButtonGroup>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QShortcut>
#include <QTimerEvent>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <utility>

#include "Boxes.h"
#include "Look.h"
#include "Symbols.h"

namespace quibbits::window {
namespace {

QString text(const std::string& words) {
    return QString::fromStdString(words);
}

/// A label that wraps, in a style.
class Words final : public QLabel {
public:
    Words(views::TextStyle style, QWidget* parent) : QLabel(parent) {
        setWordWrap(true);
        setTextFormat(Qt::PlainText);
        setStyle(style);
    }
    void setStyle(views::TextStyle style) {
        setFont(fontFor(style, parentWidget() ? parentWidget()->font() : font()));
        QPalette colors = parentWidget() ? parentWidget()->palette() : palette();
        const QColor ink = inkOf(colors, strengthOf(style));
        colors.setColor(QPalette::Active, QPalette::WindowText, ink);
        colors.setColor(QPalette::Inactive, QPalette::WindowText, ink);
        setPalette(colors);
    }
    void say(const std::string& what) {
        setText(QString::fromStdString(what));
        setVisible(!what.empty());
    }
};

/// A switch that slides.
class Switch final : public QAbstractButton {
public:
    explicit Switch(QWidget* parent) : QAbstractButton(parent) {
        setCheckable(true);
        setFixedSize(38, 22);
        setFocusPolicy(Qt::StrongFocus);
        setCursor(Qt::PointingHandCursor);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        if (!isEnabled()) painter.setOpacity(0.45);
        const QColor track = palette().color(isChecked() ? QPalette::Highlight : QPalette::Dark);
        painter.setPen(Qt::NoPen);
        painter.setBrush(track);
        painter.drawRoundedRect(QRectF(1, 1, 36, 20), 10, 10);
        painter.setBrush(Qt::white);
        painter.drawEllipse(QRectF(isChecked() ? 19 : 3, 3, 16, 16));
        if (hasFocus()) {
            painter.setBrush(Qt::NoBrush);
            painter.setPen(QPen(palette().color(QPalette::WindowText), 1, Qt::DotLine));
            painter.drawRoundedRect(QRectF(0.5, 0.5, 37, 21), 10.5, 10.5);
        }
    }
};

/// A bar that is full up to its amount.
class Bar final : public QWidget {
public:
    explicit Bar(QWidget* parent) : QWidget(parent) {
        setFixedHeight(8);
        setMinimumWidth(80);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }
    void show(double amount, const Color& tint) {
        amount_ = std::clamp(amount, 0.0, 1.0);
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
        label_->say(one.text);
        if (one.selectable) {
            label_->setTextInteractionFlags(Qt::TextSelectableByMouse |
                                            Qt::TextSelectableByKeyboard);
        }
    }

private:
    Words* label_;
};

class FactItem final : public Item {
public:
    explicit FactItem(Tell tell) : Item(std::move(tell)) {
        auto* line = new QHBoxLayout(this);
        line->setContentsMargins(0, 0, 0, 0);
        line->setSpacing(10);
        symbol_ = new QLabel(this);
        symbol_->setFixedWidth(22);
        symbol_->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
        QFont large = font();
        large.setPointSizeF(large.pointSizeF() * 1.2);
        symbol_->setFont(large);
        QPalette colors = palette();
        colors.setColor(QPalette::WindowText, colors.color(QPalette::Link));
        symbol_->setPalette(colors);
        title_ = new Words(views::TextStyle::body, this);
        detail_ = new Words(views::TextStyle::secondary, this);
        value_ = new QLabel(this);
        value_->setTextFormat(Qt::PlainText);
        value_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        auto* column = new QVBoxLayout;
        column->setSpacing(2);
        column->addWidget(title_);
        column->addWidget(detail_);
        line->addWidget(symbol_, 0, Qt::AlignTop);
        line->addLayout(column, 1);
        line->addWidget(value_, 0, Qt::AlignVCenter);
    }
    void show(const views::View& view) override {
        const auto& fact = *view.as<views::Fact>();
        symbol_->setText(glyph(fact.symbol));
        symbol_->setVisible(!fact.symbol.empty());
        title_->setStyle(fact.strong ? views::TextStyle::headline : views::TextStyle::body);
        title_->say(fact.title);
        detail_->say(fact.detail);
        value_->setText(text(fact.value));
        value_->setVisible(!fact.value.empty());
    }

private:
    QLabel* symbol_;
    Words* title_;
    Words* detail_;
    QLabel* value_;
};

class PictureItem final : public Item {
public:
    explicit PictureItem(Tell tell) : Item(std::move(tell)) {}
    void show(const views::View& view) override {
        const auto& one = *view.as<views::Picture>();
        image_ = toImage(one.image);
        if (one.drained) image_ = drained(std::move(image_));
        symbol_ = glyph(one.symbol);
        round_ = one.round;
        opacity_ = view.opacity;
        const int size = static_cast<int>(one.size);
        setFixedSize(size, size);
        update();
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
            QFont large = font();
            large.setPixelSize(std::max(height() * 6 / 10, 8));
            painter.setFont(large);
            painter.setPen(round_ ? inkOf(palette(), 0.5) : palette().color(QPalette::Link));
            painter.drawText(rect(), Qt::AlignCenter, symbol_);
            return;
        }
        painter.drawImage(rect(), image_);  // without smoothing: they are pixels
    }

private:
    QImage image_;
    QString symbol_;
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
        bar_->show(meter.amount, meter.tint);
    }

private:
    QLabel* title_;
    Bar* bar_;
    QLabel* value_;
};

class ToggleItem final : public Item {
public:
    explicit ToggleItem(Tell tell) : Item(std::move(tell)) {
        auto* line = new QHBoxLayout(this);
        line->setContentsMargins(0, 0, 0, 0);
        line->setSpacing(14);
        title_ = new Words(views::TextStyle::body, this);
        detail_ = new Words(views::TextStyle::secondary, this);
        auto* column = new QVBoxLayout;
        column->setSpacing(2);
        column->addWidget(title_);
        column->addWidget(detail_);
        switch_ = new Switch(this);
        line->addLayout(column, 1);
        line->addWidget(switch_, 0, Qt::AlignVCenter);
        connect(switch_, &QAbstractButton::clicked, this, [this](bool on) { act(on); });
    }
    void show(const views::View& view) override {
        keepIdentity(view);
        const auto& toggle = *view.as<views::Toggle>();
        title_->say(toggle.title);
        detail_->say(toggle.detail);
        switch_->setChecked(toggle.isOn);
        switch_->setAccessibleName(text(toggle.title));
        setEnabled(view.enabled);
    }

private:
    Words* title_;
    Words* detail_;
    Switch* switch_;
};

class StepperItem final : public Item {
public:
    explicit StepperItem(Tell tell) : Item(std::move(tell)) {
        auto* line = new QHBoxLayout(this);
        line->setContentsMargins(0, 0, 0, 0);
        line->setSpacing(4);
        title_ = new Words(views::TextStyle::body, this);
        less_ = stepButton("−", "Less");
        more_ = stepButton("+", "More");
        line->addWidget(title_, 1);
        line->addWidget(less_);
        line->addWidget(more_);
        connect(less_, &QToolButton::clicked, this, [this] { step(-1); });
        connect(more_, &QToolButton::clicked, this, [this] { step(1); });
    }
    void show(const views::View& view) override {
        keepIdentity(view);
        stepper_ = *view.as<views::Stepper>();
        title_->say(stepper_.title);
        less_->setEnabled(stepper_.value > stepper_.lowest);
        more_->setEnabled(stepper_.value < stepper_.highest);
        setEnabled(view.enabled);
    }

private:
    QToolButton* stepButton(const char* sign, const char* name) {
        auto* button = new QToolButton(this);
        button->setText(QString::fromUtf8(sign));
        button->setAccessibleName(name);
        button->setAutoRepeat(true);
        button->setFixedSize(30, 26);
        return button;
    }
    void step(std::int64_t way) const {
        act(std::clamp(stepper_.value + way * stepper_.step, stepper_.lowest, stepper_.highest));
    }

    views::Stepper stepper_;
    Words* title_;
    QToolButton* less_;
    QToolButton* more_;
};

/// The choices behind one button.
class PickerItem final : public Item {
public:
    explicit PickerItem(Tell tell) : Item(std::move(tell)) {
        auto* line = new QHBoxLayout(this);
        line->setContentsMargins(0, 0, 0, 0);
        title_ = new Words(views::TextStyle::body, this);
        list_ = new QComboBox(this);
        line->addWidget(title_, 1);
        line->addWidget(list_);
        connect(list_, &QComboBox::activated, this,
                [this](int index) { act(list_->itemData(index).toString().toStdString()); });
    }
    void show(const views::View& view) override {
        keepIdentity(view);
        const auto& picker = *view.as<views::Picker>();
        title_->say(picker.title);
        list_->setAccessibleName(text(picker.title));
        list_->clear();
        for (const auto& choice : picker.choices) {
            list_->addItem(text(choice.title), text(choice.id));
            if (choice.id == picker.chosen) list_->setCurrentIndex(list_->count() - 1);
        }
    }

private:
    Words* title_;
    QComboBox* list_;
};

/// The choices side by side.
class SegmentedItem final : public Item {
public:
    explicit SegmentedItem(Tell tell) : Item(std::move(tell)) {
        line_ = new QHBoxLayout(this);
        line_->setContentsMargins(24, 12, 24, 0);
        line_->setSpacing(0);
    }
    void show(const views::View& view) override {
        keepIdentity(view);
        const auto& picker = *view.as<views::Picker>();
        setAccessibleName(text(picker.title));
        if (buttons_.size() != static_cast<qsizetype>(picker.choices.size())) rebuild(picker);
        for (qsizetype i = 0; i < buttons_.size(); ++i) {
            const auto& choice = picker.choices[static_cast<std::size_t>(i)];
            buttons_[i]->setText(text(choice.title));
            buttons_[i]->setChecked(choice.id == picker.chosen);
        }
    }

private:
    void rebuild(const views::Picker& picker) {
        qDeleteAll(std::exchange(buttons_, {}));
        line_->addStretch(1);
        for (const auto& choice : picker.choices) {
            auto* button = new QToolButton(this);
            button->setCheckable(true);
            button->setAutoExclusive(true);
            button->setObjectName("segment");
            button->setMinimumWidth(96);
            line_->addWidget(button);
            buttons_.push_back(button);
            connect(button, &QToolButton::clicked, this, [this, id = choice.id] { act(id); });
        }
        line_->addStretch(1);
    }

    QHBoxLayout* line_;
    QList<QToolButton*> buttons_;
};

class ButtonItem final : public Item {
public:
    explicit ButtonItem(Tell tell) : Item(std::move(tell)) {
        auto* line = new QHBoxLayout(this);
        line->setContentsMargins(0, 0, 0, 0);
        button_ = new QPushButton(this);
        line->addWidget(button_, 0, Qt::AlignLeft);
        connect(button_, &QPushButton::clicked, this, [this] { act(); });
    }
    void show(const views::View& view) override {
        keepIdentity(view);
        const auto& button = *view.as<views::Button>();
        button_->setText(button.title.empty() ? glyph(button.symbol) : text(button.title));
        if (button.symbol == "minus.circle") button_->setAccessibleName("Remove");
        button_->setFlat(button.role == views::ButtonRole::borderless);
        button_->setDefault(button.role == views::ButtonRole::primary);
        button_->setAutoDefault(button.role == views::ButtonRole::primary);
        if (button.role == views::ButtonRole::primary && keys_.isEmpty()) pressByReturn();
        button_->setObjectName(nameFor(button.role));
        button_->setEnabled(view.enabled);
    }

protected:
    void showEvent(QShowEvent*) override {
        if (button_->isDefault()) button_->setFocus();
    }

private:
    static QString nameFor(views::ButtonRole role) {
        switch (role) {
            case views::ButtonRole::primary: return "primary";
            case views::ButtonRole::destructive: return "destructive";
            default: return "ordinary";
        }
    }

    /// From anywhere in the window, as the button of a dialog.
    void pressByReturn() {
        for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
            keys_.push_back(new QShortcut(key, this));
            connect(keys_.back(), &QShortcut::activated, button_, &QPushButton::click);
        }
    }

    QPushButton* button_;
    QList<QShortcut*> keys_;
};

/// An icon by its name in the theme, or by its path.
QIcon iconNamed(const std::string& name) {
    if (name.starts_with('/')) return QFileInfo::exists(text(name)) ? QIcon(text(name)) : QIcon();
    return QIcon::fromTheme(text(name));
}

class ChooserItem final : public Item {
public:
    explicit ChooserItem(Tell tell) : Item(std::move(tell)) {
        auto* line = new QHBoxLayout(this);
        line->setContentsMargins(0, 0, 0, 0);
        button_ = new QPushButton(this);
        line->addWidget(button_, 0, Qt::AlignLeft);
        connect(button_, &QPushButton::clicked, this, [this] { choose(); });
    }
    void show(const views::View& view) override {
        keepIdentity(view);
        chooser_ = *view.as<views::Chooser>();
        button_->setText(text(chooser_.title));
        setEnabled(view.enabled);
    }

private:
    void choose() {
        auto* dialog = new QDialog(this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setWindowTitle(text(chooser_.title));
        dialog->resize(360, 460);
        auto* column = new QVBoxLayout(dialog);
        auto* search = new QLineEdit(dialog);
        search->setPlaceholderText("Search");
        search->setClearButtonEnabled(true);
        auto* list = new QListWidget(dialog);
        list->setSelectionMode(QAbstractItemView::ExtendedSelection);
        for (const auto& entry : chooser_.entries) {
            auto* row = new QListWidgetItem(iconNamed(entry.icon), text(entry.title), list);
            row->setData(Qt::UserRole, text(entry.id));
        }
        auto* buttons =
            new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, dialog);
        column->addWidget(search);
        column->addWidget(list, 1);
        column->addWidget(buttons);
        connect(search, &QLineEdit::textChanged, list, [list](const QString& words) {
            for (int i = 0; i < list->count(); ++i) {
                list->item(i)->setHidden(
                    !list->item(i)->text().contains(words, Qt::CaseInsensitive));
            }
        });
        connect(list, &QListWidget::itemDoubleClicked, dialog, &QDialog::accept);
        connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
        connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
        connect(dialog, &QDialog::accepted, this, [this, list] {
            std::vector<std::string> ids;
            for (const auto* row : list->selectedItems()) {
                ids.push_back(row->data(Qt::UserRole).toString().toStdString());
            }
            if (!ids.empty()) act(std::move(ids));
        });
        dialog->open();
    }

    views::Chooser chooser_;
    QPushButton* button_;
};

class LinkItem final : public Item {
public:
    explicit LinkItem(Tell tell) : Item(std::move(tell)) {
        auto* line = new QHBoxLayout(this);
        line->setContentsMargins(0, 0, 0, 0);
        label_ = new QLabel(this);
        label_->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
        line->addWidget(label_);
        connect(label_, &QLabel::linkActivated, this, [this] { act(); });
    }
    void show(const views::View& view) override {
        keepIdentity(view);
        const auto& link = *view.as<views::Link>();
        label_->setText("<a href=\"open\">" + text(link.title).toHtmlEscaped() + "</a>");
        label_->setToolTip(text(link.address).toHtmlEscaped());
    }

private:
    QLabel* label_;
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

class AlertItem final : public Item {
public:
    explicit AlertItem(Tell tell) : Item(std::move(tell)) { setFixedSize(0, 0); }
    void show(const views::View& view) override {
        keepIdentity(view);
        if (box_) return;
        const auto& alert = *view.as<views::Alert>();
        box_ = new QMessageBox(QMessageBox::NoIcon, text(alert.title), text(alert.title),
                               QMessageBox::Cancel, this);
        box_->setTextFormat(Qt::PlainText);
        box_->setInformativeText(text(alert.message));
        auto* agrees =
            box_->addButton(text(alert.button), alert.destructive ? QMessageBox::DestructiveRole
                                                                  : QMessageBox::AcceptRole);
        agrees->setObjectName(alert.destructive ? "destructive" : "primary");
        box_->setDefaultButton(QMessageBox::Cancel);
        connect(box_, &QMessageBox::finished, this,
                [this, agrees] { act(box_->clickedButton() == agrees); });
        QMetaObject::invokeMethod(box_, "open", Qt::QueuedConnection);
    }

private:
    QMessageBox* box_ = nullptr;
};

class DotsItem final : public Item {
public:
    explicit DotsItem(Tell tell) : Item(std::move(tell)) {}
    void show(const views::View& view) override {
        dots_ = *view.as<views::Dots>();
        setFixedSize(static_cast<int>(dots_.count) * (width_ + space_), width_);
        setAccessibleName(QString("Page %1 of %2").arg(dots_.current + 1).arg(dots_.count));
        update();
    }

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

class PreviewItem final : public Item {
public:
    explicit PreviewItem(Tell tell) : Item(std::move(tell)) {}
    void show(const views::View& view) override {
        preview_ = *view.as<views::Preview>();
        images_.clear();
        for (const Image& image : preview_.images) images_.push_back(toImage(image));
        setFixedSize(static_cast<int>(preview_.size.width), static_cast<int>(preview_.size.height));
        at_ = 0;
        run();
        update();
    }

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
        const QImage& image = images_[frame.image];
        const QRectF part(frame.part.x * image.width(), frame.part.y * image.height(),
                          frame.part.width * image.width(), frame.part.height * image.height());
        const Rect& place = preview_.place;
        QPainter painter(this);
        painter.drawImage(
            QRectF(place.x, height() - place.y - place.height, place.width, place.height), image,
            part);
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
    if (const auto* picker = view.as<Picker>(); picker && picker->segmented) {
        return new SegmentedItem(std::move(tell));
    }
    return std::visit(
        [&]<typename Kind>(const Kind&) -> Item* {
            if constexpr (std::is_same_v<Kind, Text>) return new TextItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Fact>) return new FactItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Picture>) return new PictureItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Meter>) return new MeterItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Toggle>) return new ToggleItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Stepper>) return new StepperItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Picker>) return new PickerItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Button>) return new ButtonItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Chooser>) return new ChooserItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Link>) return new LinkItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Application>)
                return new ApplicationItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Alert>) return new AlertItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Dots>) return new DotsItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Preview>) return new PreviewItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Spacer>) return new SpacerItem(std::move(tell));
            return nullptr;
        },
        view.content);
}

Item* Item::make(const views::View& view, Tell tell) {
    if (Item* box = makeBox(view, tell)) return box;
    return makeLeaf(view, std::move(tell));
}

}  // namespace quibbits::window
