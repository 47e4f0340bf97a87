// Items that ask something in a window of their own.

#include <QDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPixmap>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "FocusRing.h"
#include "Kinds.h"
#include "Look.h"
#include "Words.h"

namespace quibbits::window {
namespace {

QPushButton* addButton(QHBoxLayout& line, const QString& title, const char* name) {
    auto* button = new QPushButton(title);
    button->setObjectName(name);
    button->setAutoDefault(false);
    line.addWidget(button);
    return button;
}

/// The applications to pick from. What is typed picks the first that fits.
class Picking final : public QDialog {
public:
    Picking(const views::Chooser& chooser, QWidget* parent) : QDialog(parent) {
        setAttribute(Qt::WA_DeleteOnClose);
        QString title = text(chooser.title);
        title.remove("…");
        setWindowTitle(title);
        resize(380, 460);
        auto* column = new QVBoxLayout(this);
        column->setContentsMargins(16, 16, 16, 16);
        column->setSpacing(12);
        search_ = new QLineEdit(this);
        search_->setPlaceholderText("Search");
        search_->setAccessibleName("Search");
        search_->setClearButtonEnabled(true);
        list_ = new QListWidget(this);
        list_->setAccessibleName("Applications");
        list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
        list_->setUniformItemSizes(true);
        list_->setIconSize({iconSide, iconSide});
        fill(chooser.entries);
        column->addWidget(search_);
        column->addWidget(list_, 1);
        auto* line = new QHBoxLayout;
        line->addStretch(1);
        connect(addButton(*line, "Cancel", "ordinary"), &QPushButton::clicked, this,
                &QDialog::reject);
        add_ = addButton(*line, "Add", "primary");
        add_->setDefault(true);
        add_->setEnabled(false);
        connect(add_, &QPushButton::clicked, this, &QDialog::accept);
        column->addLayout(line);
        connect(search_, &QLineEdit::textChanged, this,
                [this](const QString& words) { narrow(words); });
        connect(list_, &QListWidget::itemSelectionChanged, this,
                [this] { add_->setEnabled(!list_->selectedItems().isEmpty()); });
        connect(list_, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
        search_->setFocus();
        new FocusRing(this);
    }

    std::vector<std::string> picked() const {
        std::vector<std::string> ids;
        for (const auto* row : list_->selectedItems()) {
            ids.push_back(row->data(Qt::UserRole).toString().toStdString());
        }
        return ids;
    }

private:
    static constexpr int iconSide = 22;

    void fill(std::vector<views::Chooser::Entry> entries) {
        std::ranges::stable_sort(entries, [](const auto& one, const auto& other) {
            return QString::localeAwareCompare(text(one.title).toLower(),
                                               text(other.title).toLower()) < 0;
        });
        QPixmap nothing(iconSide, iconSide);  // keeps the room of an icon
        nothing.fill(Qt::transparent);
        for (const auto& entry : entries) {
            QIcon icon = iconNamed(entry.icon);
            if (icon.isNull()) icon = QIcon(nothing);
            auto* row = new QListWidgetItem(icon, text(entry.title), list_);
            row->setData(Qt::UserRole, text(entry.id));
        }
    }

    void narrow(const QString& words) {
        list_->clearSelection();
        bool isFirst = true;
        for (int i = 0; i < list_->count(); ++i) {
            auto* row = list_->item(i);
            row->setHidden(!row->text().contains(words, Qt::CaseInsensitive));
            if (row->isHidden() || words.isEmpty() || !std::exchange(isFirst, false)) continue;
            list_->setCurrentItem(row);
        }
    }

    QLineEdit* search_;
    QListWidget* list_;
    QPushButton* add_;
};

class ChooserItem final : public Item {
public:
    explicit ChooserItem(Tell tell) : Item(std::move(tell)) {
        auto* line = new QHBoxLayout(this);
        line->setContentsMargins(0, 0, 0, 0);
        button_ = new QPushButton(this);
        button_->setAutoDefault(false);
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
        auto* dialog = new Picking(chooser_, this);
        connect(dialog, &QDialog::accepted, this, [this, dialog] {
            if (auto ids = dialog->picked(); !ids.empty()) act(std::move(ids));
        });
        dialog->open();
    }

    views::Chooser chooser_;
    QPushButton* button_;
};

class AlertItem final : public Item {
public:
    explicit AlertItem(Tell tell) : Item(std::move(tell)) { setFixedSize(0, 0); }
    bool isShownInPlace() const override { return false; }
    void show(const views::View& view) override {
        keepIdentity(view);
        if (dialog_) return;
        const auto& alert = *view.as<views::Alert>();
        dialog_ = new QDialog(this);
        auto* column = new QVBoxLayout(dialog_);
        column->setContentsMargins(22, 20, 22, 18);
        column->setSpacing(10);
        auto* title = new Words(views::TextStyle::headline, dialog_);
        title->say(alert.title);
        auto* message = new Words(views::TextStyle::body, dialog_);
        message->say(alert.message);
        message->setMinimumWidth(340);
        column->addWidget(title);
        column->addWidget(message);
        column->addSpacing(8);
        auto* line = new QHBoxLayout;
        line->addStretch(1);
        auto* cancel = addButton(*line, "Cancel", "ordinary");
        auto* agrees =
            addButton(*line, text(alert.button), alert.destructive ? "destructive" : "primary");
        column->addLayout(line);
        cancel->setDefault(true);
        cancel->setFocus();
        connect(cancel, &QPushButton::clicked, dialog_, &QDialog::reject);
        connect(agrees, &QPushButton::clicked, dialog_, &QDialog::accept);
        connect(dialog_, &QDialog::finished, this,
                [this](int result) { act(result == QDialog::Accepted); });
        new FocusRing(dialog_);
        // Later, when this stands in its window.
        QMetaObject::invokeMethod(
            dialog_,
            [this] {
                dialog_->setWindowTitle(window()->windowTitle());
                dialog_->open();
            },
            Qt::QueuedConnection);
    }

private:
    QDialog* dialog_ = nullptr;
};

}  // namespace

Item* makeDialog(const views::View& view, Tell tell) {
    if (view.as<views::Chooser>()) return new ChooserItem(std::move(tell));
    if (view.as<views::Alert>()) return new AlertItem(std::move(tell));
    return nullptr;
}

}  // namespace quibbits::window
