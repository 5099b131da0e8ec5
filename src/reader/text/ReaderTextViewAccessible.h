#pragma once

#include "text/ScalarOffsets.h"

#include <QAccessibleTextInterface>
#include <QAccessibleWidget>
#include <QHash>
#include <QStringList>

#include <vector>

namespace Quillory {

class ReaderTextView;

// The text view for assistive programs: the text, its attributes and selection, one button for each block and
// one action for each target, all answered when asked. The text can't be edited. Offsets count Unicode scalars, as
// assistive programs do on this desktop.
class ReaderTextViewAccessible : public QAccessibleWidget, public QAccessibleTextInterface {
public:
    // Every text view made from now on has one.
    static void install();

    explicit ReaderTextViewAccessible(ReaderTextView* view);
    ~ReaderTextViewAccessible() override;

    void* interface_cast(QAccessible::InterfaceType type) override;
    QAccessible::State state() const override;

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(QAccessibleInterface const* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override { return nullptr; }

    QStringList actionNames() const override;
    QString localizedActionName(QString const& name) const override { return name; }
    void doAction(QString const& name) override;
    QStringList keyBindingsForAction(QString const&) const override { return {}; }

    void selection(int index, int* start, int* end) const override;
    int selectionCount() const override;
    void addSelection(int start, int end) override;
    void removeSelection(int index) override;
    void setSelection(int index, int start, int end) override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    QString text(int start, int end) const override;
    QString textBeforeOffset(int offset, QAccessible::TextBoundaryType type, int* start, int* end) const override;
    QString textAfterOffset(int offset, QAccessible::TextBoundaryType type, int* start, int* end) const override;
    QString textAtOffset(int offset, QAccessible::TextBoundaryType type, int* start, int* end) const override;
    int characterCount() const override;
    QRect characterRect(int offset) const override;
    int offsetAtPoint(QPoint const& point) const override;
    void scrollToSubstring(int start, int end) override;
    QString attributes(int offset, int* start, int* end) const override;
    using QAccessibleWidget::text;

private:
    // In UTF-16 units.
    struct Span {
        qsizetype start = 0;
        qsizetype end = 0;
    };

    ReaderTextView& view() const;
    QString const& string() const;
    ScalarOffsets const& offsets() const;
    int offsetOf(qsizetype unit) const { return static_cast<int>(offsets().scalarAt(unit)); }
    // An offset outside the text is brought to its nearer end.
    qsizetype unitOf(int offset) const;
    bool isInText(int offset) const { return offset >= 0 && offset <= characterCount(); }
    Span spanAt(qsizetype unit, QAccessible::TextBoundaryType type) const;
    QString textOf(Span span, int* start, int* end) const;
    void forgetButtons();
    void tellOfSelection() const;
    void tellButtonsOfCopy() const;

    std::vector<QMetaObject::Connection> m_connections;
    mutable QHash<int, QAccessible::Id> m_buttons;
    mutable QString m_counted; // the text that the offsets are those of
    mutable ScalarOffsets m_offsets;
    mutable QStringList m_actionNames; // one a target; made when first asked for
};

}
