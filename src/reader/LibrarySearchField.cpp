#include "reader/LibrarySearchField.h"

#include "reader/Panes.h"
#include "reader/text/EventModifiers.h"

#include <QKeyEvent>

namespace Quillory {

LibrarySearchField::LibrarySearchField(LibraryStore& store, QWidget* parent)
    : QLineEdit(parent)
    , m_store(store)
{
    setPlaceholderText(tr("Search library"));
    setAccessibleName(tr("Search library"));
    setHelp(*this, tr("Filter sheets by title and content (⌘K)"));
    connect(this, &QLineEdit::textChanged, this, [this](QString const& query) { m_store.setLibraryQuery(query); });
}

void LibrarySearchField::refresh()
{
    if (text() != m_store.libraryQuery.value())
        setText(m_store.libraryQuery);
}

void LibrarySearchField::type(QKeyEvent* event)
{
    setFocus(Qt::OtherFocusReason);
    end(false);
    keyPressEvent(event);
}

void LibrarySearchField::focusInEvent(QFocusEvent* event)
{
    QLineEdit::focusInEvent(event);
    m_store.prepareLibrarySearch();
}

void LibrarySearchField::keyPressEvent(QKeyEvent* event)
{
    auto const modifiers = without(modifierFlags(event->modifiers()), m_store.peekModifiers);
    switch (modifiers == ModifierFlags::none ? event->key() : 0) {
    case Qt::Key_Up:
        m_store.selectAdjacentResult(-1);
        return;
    case Qt::Key_Down:
        m_store.selectAdjacentResult(1);
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_store.acceptLibrarySearch())
            Q_EMIT accepted();
        return;
    case Qt::Key_Escape:
        if (text().isEmpty())
            event->ignore(); // the window's
        else
            clear();
        return;
    default:
        QLineEdit::keyPressEvent(event);
    }
}

}
