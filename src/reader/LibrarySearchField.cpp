#include "reader/LibrarySearchField.h"

#include "reader/Panes.h"
#include "reader/text/EventModifiers.h"
#include "textlayout/ColorSet.h"

#include <QKeyEvent>

namespace Quillory {

namespace {

constexpr float placeholderShare = 0.65F;

}

LibrarySearchField::LibrarySearchField(LibraryStore& store, QWidget* parent)
    : QLineEdit(parent)
    , m_store(store)
{
    setPlaceholderText(tr("Search library"));
    setAccessibleName(tr("Search library"));
    setHelp(*this, tr("Filter sheets by title and content (⌘K)"));
    takeColors();
    connect(this, &QLineEdit::textChanged, this, [this](QString const& query) { m_store.setLibraryQuery(query); });
}

void LibrarySearchField::refresh()
{
    if (text() != m_store.libraryQuery.value())
        setText(m_store.libraryQuery);
}

// Many palettes have a colour for it that can't be read on their own ground.
void LibrarySearchField::takeColors()
{
    auto colors = palette();
    auto placeholder = ColorSet::fromPalette(colors).label;
    placeholder.setAlphaF(placeholderShare);
    if (placeholder == colors.color(QPalette::PlaceholderText))
        return;
    colors.setColor(QPalette::PlaceholderText, placeholder);
    setPalette(colors);
}

void LibrarySearchField::changeEvent(QEvent* event)
{
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        takeColors();
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
    auto const modifiers = modifierFlags(event->modifiers());
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
