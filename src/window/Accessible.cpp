#include "Accessible.h"

#include <QAccessibleWidget>
#include <QFrame>
#include <QWidget>

#include "Window.h"

namespace quibbits::window {
namespace {

bool canBePressed(QAccessible::Role role) {
    return role == QAccessible::CheckBox || role == QAccessible::Button ||
           role == QAccessible::ListItem || role == QAccessible::RadioButton ||
           role == QAccessible::Link;
}

class SpokenInterface final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    SpokenInterface(QWidget* widget, Spoken* spoken)
        : QAccessibleWidget(widget, spoken->spokenRole()), spoken_(spoken) {}

    QAccessible::Role role() const override { return spoken_->spokenRole(); }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = role() == QAccessible::CheckBox || role() == QAccessible::RadioButton;
        state.checked = spoken_->isSpokenChecked();
        state.selectable = role() == QAccessible::ListItem;
        state.selected = spoken_->isSpokenSelected();
        const auto open = spoken_->isSpokenOpen();
        state.expandable = open.has_value();
        state.expanded = open == true;
        state.collapsed = open == false;
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

/// To the toolkit every frame is a window's frame, and a plain window is nothing in particular.
std::optional<QAccessible::Role> roleOf(const QWidget& widget) {
    if (dynamic_cast<const Window*>(&widget)) return QAccessible::Window;
    if (widget.metaObject() != &QFrame::staticMetaObject) return std::nullopt;
    if (widget.objectName() == "hairline") return QAccessible::Separator;
    return widget.objectName() == "sidebar" ? QAccessible::List : QAccessible::Grouping;
}

QAccessibleInterface* interfaceOf(const QString&, QObject* object) {
    auto* widget = qobject_cast<QWidget*>(object);
    if (!widget) return nullptr;
    if (auto* spoken = dynamic_cast<Spoken*>(object)) return new SpokenInterface(widget, spoken);
    const auto role = roleOf(*widget);
    return role ? new QAccessibleWidget(widget, *role) : nullptr;
}

}  // namespace

void tellAssistivePrograms() {
    QAccessible::installFactory(interfaceOf);
}

}  // namespace quibbits::window
