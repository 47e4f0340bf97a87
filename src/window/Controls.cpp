// Items that the user acts upon.

#include <QAbstractButton>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
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
        choices_ = picker.choices;
        if (buttons_.size() != static_cast<qsizetype>(choices_.size())) rebuild();
        for (qsizetype i = 0; i < buttons_.size(); ++i) {
            const auto& choice = choices_[static_cast<std::size_t>(i)];
            buttons_[i]->setText(text(choice.title));
            buttons_[i]->setChecked(choice.id == picker.chosen);
        }
    }

private:
    void rebuild() {
        qDeleteAll(std::exchange(buttons_, {}));
        while (QLayoutItem* each = line_->takeAt(0)) delete each;
        line_->addStretch(1);
        for (std::size_t i = 0; i < choices_.size(); ++i) {
            auto* button = new QToolButton(this);
            button->setCheckable(true);
            button->setAutoExclusive(true);
            button->setObjectName("segment");
            button->setMinimumWidth(96);
            line_->addWidget(button);
            buttons_.push_back(button);
            connect(button, &QToolButton::clicked, this, [this, i] { act(choices_[i].id); });
        }
        line_->addStretch(1);
    }

    QHBoxLayout* line_;
    std::vector<views::Picker::Choice> choices_;
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

class AlertItem final : public Item {
public:
    explicit AlertItem(Tell tell) : Item(std::move(tell)) { setFixedSize(0, 0); }
    bool isShownInPlace() const override { return false; }
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
            if constexpr (std::is_same_v<Kind, Chooser>) return new ChooserItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Link>) return new LinkItem(std::move(tell));
            if constexpr (std::is_same_v<Kind, Alert>) return new AlertItem(std::move(tell));
            return nullptr;
        },
        view.content);
}

}  // namespace quibbits::window
