#include "Accessible.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace quibbits::window {
namespace {

bool canBePressed(QAccessible::Role role) {
    return role == QAccessible::CheckBox || role == QAccessible::Button ||
           role == QAccessible::ListItem;
}

class SpokenInterface final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    SpokenInterface(QWidget* widget, Spoken* spoken)
        : QAccessibleWidget(widget, spoken->spokenRole()), spoken_(spoken) {}

    QAccessible::Role role() const override { return spoken_->spokenRole(); }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = spoken_->spokenRole() == QAccessible::CheckBox;
        state.checked = spoken_->isSpokenChecked();
        state.selectable = spoken_->spokenRole() == QAccessible::ListItem;
        state.selected = spoken_->isSpokenSelected();
        return state;
    }
    QString text(QAccessible::Text what) const override {
        const auto percentage = spoken_->spokenPercentage();
        if (what == QAccessible::Value && percentage) return QString("%1 %").arg(*percentage);
        return QAccessibleWidget::text(what);
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface && spoken_->spokenPercentage()) {
            return static_cast<QAccessibleValueInterface*>(this);
        }
        return QAccessibleWidget::interface_cast(type);
    }

    QStringList actionNames() const override {
        QStringList names = QAccessibleWidget::actionNames();
        if (canBePressed(spoken_->spokenRole())) names.prepend(pressAction());
        return names;
    }
    void doAction(const QString& name) override {
        if (name == pressAction()) return spoken_->pressBySpeech();
        QAccessibleWidget::doAction(name);
    }

    QVariant currentValue() const override { return spoken_->spokenPercentage().value_or(0); }
    void setCurrentValue(const QVariant&) override {}
    QVariant minimumValue() const override { return 0; }
    QVariant maximumValue() const override { return 100; }
    QVariant minimumStepSize() const override { return 1; }

private:
    Spoken* spoken_;
};

QAccessibleInterface* interfaceOf(const QString&, QObject* object) {
    auto* spoken = dynamic_cast<Spoken*>(object);
    auto* widget = qobject_cast<QWidget*>(object);
    return spoken && widget ? new SpokenInterface(widget, spoken) : nullptr;
}

}  // namespace

void tellAssistivePrograms() {
    QAccessible::installFactory(interfaceOf);
}

}  // namespace quibbits::window
