// Items that the user acts upon.

#include <QAbstractButton>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListView>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
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

/// A switch that slides.
class Switch final : public QAbstractButton, public Spoken {
public:
    explicit Switch(QWidget* parent) : QAbstractButton(parent) {
        setCheckable(true);
        setFixedSize(38, 22);
        setFocusPolicy(Qt::StrongFocus);
        setCursor(Qt::PointingHandCursor);
    }
    QAccessible::Role spokenRole() const override { return QAccessible::CheckBox; }
    bool isSpokenChecked() const override { return isChecked(); }
    void pressBySpeech() override { click(); }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return click();
        QAbstractButton::keyPressEvent(event);
    }
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
    }
};

class ToggleItem final : public Item {
public:
    explicit ToggleItem(Tell tell) : Item(std::move(tell)) {
        auto* line = line_ = new QHBoxLayout(this);
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
        switch_->setAccessibleName(text(view.spoken.empty() ? toggle.title : view.spoken));
        switch_->setAccessibleDescription(text(toggle.detail));
        setEnabled(view.enabled);
    }
    void alignWithSymbols(bool indented) override {
        line_->setContentsMargins(indented ? besideSymbols : 0, 0, 0, 0);
    }

protected:
    /// The words belong to the switch.
    void mouseReleaseEvent(QMouseEvent* event) override {
        if (isEnabled() && event->button() == Qt::LeftButton && rect().contains(event->pos())) {
            switch_->click();
        }
    }

private:
    QHBoxLayout* line_;
    Words* title_;
    Words* detail_;
    Switch* switch_;
};

class StepperItem final : public Item {
public:
    explicit StepperItem(Tell tell) : Item(std::move(tell)) {
        auto* line = new QHBoxLayout(this);
        line->setContentsMargins(0, 0, 0, 0);
        line->setSpacing(6);
        title_ = new Words(views::TextStyle::body, this);
        less_ = stepButton("−");
        more_ = stepButton("+");
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
        less_->setAccessibleName("Less: " + text(stepper_.title));
        more_->setAccessibleName("More: " + text(stepper_.title));
        less_->setEnabled(stepper_.value > stepper_.lowest);
        more_->setEnabled(stepper_.value < stepper_.highest);
        setEnabled(view.enabled);
    }

private:
    QToolButton* stepButton(const char* sign) {
        auto* button = new QToolButton(this);
        button->setObjectName("step");
        button->setFocusPolicy(Qt::StrongFocus);
        button->setText(QString::fromUtf8(sign));
        button->setAutoRepeat(true);
        button->setFixedSize(30, 26);
        return button;
    }
    void step(std::int64_t way) const {
        const auto highest = std::max(stepper_.lowest, stepper_.highest);
        act(std::clamp(stepper_.value + way * stepper_.step, stepper_.lowest, highest));
    }

    views::Stepper stepper_;
    Words* title_;
    QToolButton* less_;
    QToolButton* more_;
};

/// With an arrow that says that there is more.
class Choices final : public QComboBox {
public:
    explicit Choices(QWidget* parent) : QComboBox(parent) {
        setView(new QListView(this));  // of the usual kind, so that the style sheet is heeded
        setSizeAdjustPolicy(QComboBox::AdjustToContents);
    }

protected:
    void paintEvent(QPaintEvent* event) override {
        QComboBox::paintEvent(event);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette().color(QPalette::WindowText), 1.6, Qt::SolidLine, Qt::RoundCap,
                            Qt::RoundJoin));
        const QPointF middle(width() - 16, height() / 2.0);
        painter.drawPolyline(
            QPolygonF({middle + QPointF(-4, -2), middle + QPointF(0, 2), middle + QPointF(4, -2)}));
    }
    /// Turned above a page that scrolls, the wheel scrolls the page.
    void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

/// The choices behind one button.
class PickerItem final : public Item {
public:
    explicit PickerItem(Tell tell) : Item(std::move(tell)) {
        auto* line = new QHBoxLayout(this);
        line->setContentsMargins(0, 0, 0, 0);
        title_ = new Words(views::TextStyle::body, this);
        list_ = new Choices(this);
        title_->setBuddy(list_);
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
        if (picker.choices != choices_) {  // an open list stays open
            choices_ = picker.choices;
            list_->clear();
            for (const auto& choice : choices_) list_->addItem(text(choice.title), text(choice.id));
        }
        list_->setCurrentIndex(list_->findData(text(picker.chosen)));
    }

private:
    Words* title_;
    Choices* list_;
    std::vector<views::Picker::Choice> choices_;
};

/// One of the choices side by side.
class Segment final : public QToolButton, public Spoken {
public:
    explicit Segment(QWidget* parent) : QToolButton(parent) {
        setCheckable(true);
        setAutoExclusive(true);
        setFocusPolicy(Qt::StrongFocus);
        setObjectName("segment");
        setMinimumWidth(96);
    }
    QAccessible::Role spokenRole() const override { return QAccessible::RadioButton; }
    bool isSpokenChecked() const override { return isChecked(); }
    void pressBySpeech() override { click(); }
};

/// The choices side by side.
class SegmentedItem final : public Item {
public:
    explicit SegmentedItem(Tell tell) : Item(std::move(tell)) {
        line_ = new QHBoxLayout(this);
        line_->setContentsMargins(24, 8, 24, 12);
        line_->setSpacing(0);
    }
    void show(const views::View& view) override {
        keepIdentity(view);
        const auto& picker = *view.as<views::Picker>();
        setAccessibleName(text(picker.title));
        choices_ = picker.choices;
        if (buttons_.size() != static_cast<qsizetype>(choices_.size())) rebuild();
        for (qsizetype i = 0; i < buttons_.size(); ++i) {
            const auto& choice = choices_[static_cast<std::size_t>(i)];
            buttons_[i]->setText(text(choice.title));
            buttons_[i]->setAccessibleName(text(choice.title));
            buttons_[i]->setChecked(choice.id == picker.chosen);
        }
    }

private:
    void rebuild() {
        qDeleteAll(std::exchange(buttons_, {}));
        while (QLayoutItem* each = line_->takeAt(0)) delete each;
        line_->addStretch(1);
        for (std::size_t i = 0; i < choices_.size(); ++i) {
            auto* button = new Segment(this);
            if (i == 0) button->setProperty("end", "first");
            if (i + 1 == choices_.size()) button->setProperty("end", "last");
            line_->addWidget(button);
            buttons_.push_back(button);
            connect(button, &Segment::clicked, this, [this, i] { act(choices_[i].id); });
        }
        line_->addStretch(1);
    }

    QHBoxLayout* line_;
    std::vector<views::Picker::Choice> choices_;
    QList<Segment*> buttons_;
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
        button_->setText(text(button.title));
        button_->setIcon(symbolIcon(button.symbol));
        button_->setAccessibleName(text(view.spoken.empty() ? button.title : view.spoken));
        if (button.title.empty()) button_->setToolTip(text(view.spoken));
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

/// The toolkit's own wants the keyboard to be on the words within it.
class LinkLabel final : public QLabel, public Spoken {
public:
    explicit LinkLabel(QWidget* parent) : QLabel(parent) {
        setTextInteractionFlags(Qt::LinksAccessibleByMouse);
        setFocusPolicy(Qt::StrongFocus);
    }
    QAccessible::Role spokenRole() const override { return QAccessible::Link; }
    void pressBySpeech() override { emit linkActivated({}); }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        const bool chooses = event->key() == Qt::Key_Return || event->key() == Qt::Key_Space ||
                             event->key() == Qt::Key_Enter;
        if (chooses) return pressBySpeech();
        QLabel::keyPressEvent(event);
    }
};

class LinkItem final : public Item {
public:
    explicit LinkItem(Tell tell) : Item(std::move(tell)) {
        auto* line = new QHBoxLayout(this);
        line->setContentsMargins(0, 0, 0, 0);
        label_ = new LinkLabel(this);
        line->addWidget(label_);
        connect(label_, &QLabel::linkActivated, this, [this] { act(); });
    }
    void show(const views::View& view) override {
        keepIdentity(view);
        const auto& link = *view.as<views::Link>();
        label_->setAccessibleName(text(link.title));
        label_->setText("<a href=\"open\">" + text(link.title).toHtmlEscaped() + "</a>");
        label_->setToolTip(text(link.address).toHtmlEscaped());
    }

private:
    LinkLabel* label_;
};

}  // namespace

Item* makeControl(const views::View& view, Tell tell) {
    using namespace views;
    if (const auto* picker = view.as<Picker>(); picker && picker->segmented) {
        return new SegmentedItem(std::move(tell));
    }
    return std::visit(
        [&]<typename Kind>(const Kind&) -> Item* {
            if constexpr (std::is_same_v<Kind, Toggle>) return new ToggleItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Stepper>) return new StepperItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Picker>) return new PickerItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Button>) return new ButtonItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Link>) return new LinkItem(std::move(tell));
            return nullptr;
        },
        view.content);
}

}  // namespace quibbits::window
