#pragma once

#include <QAccessibleInterface>
#include <QPointer>

namespace Quillory {

class ReaderTextView;

// The copy button of one block, in sight or not.
class CodeButtonAccessible : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    CodeButtonAccessible(ReaderTextView* view, qsizetype target);

    qsizetype target() const { return m_target; }

    bool isValid() const override;
    QObject* object() const override { return nullptr; }
    void* interface_cast(QAccessible::InterfaceType type) override;
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(QAccessibleInterface const*) const override { return -1; }
    QString text(QAccessible::Text type) const override;
    void setText(QAccessible::Text, QString const&) override { }
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::Button; }
    QAccessible::State state() const override;

    QStringList actionNames() const override;
    void doAction(QString const& name) override;
    QStringList keyBindingsForAction(QString const&) const override { return {}; }

private:
    QPointer<ReaderTextView> m_view;
    qsizetype m_target;
};

}
