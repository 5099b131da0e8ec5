#include "reader/BarButtonAccessible.h"

namespace Quillory {

namespace {

QAccessibleInterface* make(QString const&, QObject* object)
{
    auto* const button = qobject_cast<BarButton*>(object);
    return button ? new BarButtonAccessible(button) : nullptr;
}

}

void BarButtonAccessible::install()
{
    static bool const isInstalled = (QAccessible::installFactory(make), true);
    Q_UNUSED(isInstalled);
}

BarButtonAccessible::BarButtonAccessible(BarButton* button)
    : QAccessibleWidget(button, QAccessible::Button)
{
}

void* BarButtonAccessible::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ValueInterface && button().value())
        return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QAccessible::Role BarButtonAccessible::role() const
{
    return button().isCheckable() ? QAccessible::CheckBox : QAccessible::Button;
}

QAccessible::State BarButtonAccessible::state() const
{
    auto state = QAccessibleWidget::state();
    state.pressed = button().isDown();
    state.checkable = button().isCheckable();
    state.checked = button().isChecked();
    return state;
}

QString BarButtonAccessible::text(QAccessible::Text type) const
{
    return type == QAccessible::Value && button().value() ? button().value()->text : QAccessibleWidget::text(type);
}

QStringList BarButtonAccessible::actionNames() const
{
    return QStringList { pressAction() } + QAccessibleWidget::actionNames();
}

void BarButtonAccessible::doAction(QString const& name)
{
    if (name == pressAction())
        button().click();
    else
        QAccessibleWidget::doAction(name);
}

}
