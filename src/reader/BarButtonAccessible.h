#pragma once

#include "reader/BarButton.h"

#include <QAccessibleWidget>

namespace Quillory {

// A bar's button as assistive programs get it, with its value where it has one, such as the size of the text.
class BarButtonAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    // From then on buttons are told of in this way.
    static void install();

    explicit BarButtonAccessible(BarButton* button);

    void* interface_cast(QAccessible::InterfaceType type) override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text type) const override;
    QStringList actionNames() const override;
    void doAction(QString const& name) override;

    QVariant currentValue() const override { return button().value()->number; }
    void setCurrentValue(QVariant const&) override { }
    QVariant minimumValue() const override { return {}; }
    QVariant maximumValue() const override { return {}; }
    QVariant minimumStepSize() const override { return {}; }

private:
    BarButton& button() const { return *static_cast<BarButton*>(widget()); }
};

}
