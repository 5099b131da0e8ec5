#include "reader/SheetList.h"

#include "presentation/hover_help/HoverHelpTrackingView.h"
#include "presentation/hover_help/MenuHelp.h"
#include "reader/text/EventModifiers.h"
#include "text/TextOrder.h"

#include <QContextMenuEvent>
#include <QHoverEvent>
#include <QMenu>
#include <QPainter>
#include <QScopedValueRollback>
#include <QSet>

#include <algorithm>

namespace Quillory {

namespace {

// Without those that make a command of a key. The peek's own are none.
bool isText(QKeyEvent const& event, ModifierFlags modifiers)
{
    auto const text = event.text();
    bool const isPrintable = !text.isEmpty() && (text.front().isPrint() || text.front().isSurrogate());
    return isPrintable && without(modifiers, ModifierFlags::shift) == ModifierFlags::none;
}

}

SheetList::SheetList(LibraryStore& store, QWidget* parent)
    : QListView(parent)
    , m_store(store)
{
    setModel(&m_model);
    setItemDelegate(&m_delegate);
    setFocusPolicy(Qt::TabFocus);
    setFrameShape(QFrame::NoFrame);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setUniformItemSizes(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAccessibleName(tr("Sheets"));
    viewport()->setAttribute(Qt::WA_Hover);
    auto const change = [this] { m_areRowsOld = true; };
    m_observations.push_back(m_store.sheets.addNotifier(change));
    m_observations.push_back(m_store.libraryResults.addNotifier(change));
    m_observations.push_back(m_store.pinnedIDs.addNotifier(change));
    takeColors();
}

void SheetList::takeColors()
{
    m_delegate.setColors(SheetRowColors::fromPalette(palette()));
    viewport()->update();
}

void SheetList::changeEvent(QEvent* event)
{
    QListView::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
        takeColors();
}

QList<SheetListModel::Row> SheetList::makeRows() const
{
    auto const& results = m_store.libraryResults.value();
    auto const& sheets = m_store.sheets.value();
    QSet<QString> found; // most often all, which takes no set
    bool const areAll = std::ranges::equal(results, sheets, {}, {}, &Sheet::id);
    if (!areAll)
        found = { results.cbegin(), results.cend() };
    QSet<QString> pinned;
    for (auto const& pin : m_store.pinnedIDs.value())
        pinned.insert(canonicalForm(pin));
    QList<SheetListModel::Row> rows;
    rows.reserve(results.size());
    for (auto const& sheet : sheets) {
        if (areAll || found.contains(sheet.id))
            rows.append({ sheet.id, sheet.title, sheet.error.value_or(QString()),
                !pinned.isEmpty() && pinned.contains(canonicalForm(sheet.id)) });
    }
    return rows;
}

void SheetList::refresh()
{
    QScopedValueRollback const following(m_isFollowing, true);
    if (std::exchange(m_areRowsOld, false)) {
        m_model.setRows(makeRows());
        tellRow({}); // another one may be under the pointer now
    }
    auto const* const selected = m_store.selectedSheet();
    auto const index = selected ? m_model.indexOf(selected->id) : QModelIndex();
    if (index == currentIndex() && (!index.isValid() || selectionModel()->isSelected(index)))
        return;
    if (index.isValid())
        setCurrentIndex(index);
    else
        selectionModel()->clear();
}

void SheetList::showSelection()
{
    if (auto const selected = currentIndex(); selected.isValid())
        scrollTo(selected);
    else
        scrollToTop();
}

void SheetList::currentChanged(QModelIndex const& current, QModelIndex const& previous)
{
    QListView::currentChanged(current, previous);
    if (current.isValid() && !m_isFollowing)
        m_store.select(m_model.rowAt(current).id);
}

// Modifiers mean nothing, so that none of them takes the selection from a row.
QItemSelectionModel::SelectionFlags SheetList::selectionCommand(QModelIndex const& index, QEvent const*) const
{
    return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
}

// The base makes the first row current, which would select its sheet.
void SheetList::focusInEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusInEvent(event); // NOLINT(bugprone-parent-virtual-call) not the base's, on purpose
    viewport()->update();
}

void SheetList::paintEvent(QPaintEvent* event)
{
    QListView::paintEvent(event);
    if (!hasFocus() || currentIndex().isValid())
        return;
    constexpr int ring = 2;
    QPainter painter(viewport());
    painter.setPen(QPen(SheetRowColors::fromPalette(palette()).focus, ring));
    painter.drawRect(viewport()->rect().adjusted(ring / 2, ring / 2, -ring / 2, -ring / 2));
}

void SheetList::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        QListView::mousePressEvent(event);
}

bool SheetList::viewportEvent(QEvent* event)
{
    switch (event->type()) {
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
        tellRow(indexAt(static_cast<QHoverEvent const*>(event)->position().toPoint()));
        break;
    case QEvent::HoverLeave:
        tellRow({});
        break;
    default:
        break;
    }
    return QListView::viewportEvent(event);
}

// The whole title where it has no room, and what is wrong with the sheet.
void SheetList::tellRow(QModelIndex const& index)
{
    if (index.isValid() && index == m_told)
        return;
    m_told = index;
    QStringList lines;
    if (index.isValid()) {
        auto const& row = m_model.rowAt(index);
        if (!SheetRowDelegate::isTitleWhole(fontMetrics(), visualRect(index).width(), index))
            lines.append(index.data().toString());
        if (!row.error.isEmpty())
            lines.append(row.error);
    }
    HoverHelpTrackingView::of(*viewport()).enterArea(visualRect(index), lines.join(u'\n'));
}

int SheetList::rowsOfPage() const
{
    return std::max(1, viewport()->height() / std::max(1, sizeHintForRow(0)) - 1);
}

void SheetList::move(int rows)
{
    m_store.selectAdjacentResult(rows);
}

void SheetList::keyPressEvent(QKeyEvent* event)
{
    auto const modifiers = without(modifierFlags(event->modifiers()), m_store.peekModifiers);
    bool const isPlain = modifiers == ModifierFlags::none;
    if (event->key() == Qt::Key_F10 && modifiers == ModifierFlags::shift)
        return openMenu(currentIndex(), visualRect(currentIndex()).bottomLeft());
    bool const isBlank = m_store.libraryQuery.value().isEmpty() && event->key() == Qt::Key_Space;
    if ((isText(*event, modifiers) && !isBlank) || (isPlain && event->key() == Qt::Key_Backspace)) {
        Q_EMIT typed(event);
        return;
    }
    switch (isPlain ? event->key() : 0) {
    case Qt::Key_Up:
        return move(-1);
    case Qt::Key_Down:
        return move(1);
    case Qt::Key_PageUp:
        return move(-rowsOfPage());
    case Qt::Key_PageDown:
        return move(rowsOfPage());
    case Qt::Key_Home:
        return move(-m_model.rowCount());
    case Qt::Key_End:
        return move(m_model.rowCount());
    case Qt::Key_Return:
    case Qt::Key_Enter:
        Q_EMIT accepted();
        return;
    default:
        event->ignore(); // the window's
    }
}

void SheetList::contextMenuEvent(QContextMenuEvent* event)
{
    if (event->reason() == QContextMenuEvent::Mouse)
        openMenu(indexAt(event->pos()), event->pos());
    else
        openMenu(currentIndex(), visualRect(currentIndex()).bottomLeft());
}

std::unique_ptr<QMenu> SheetList::makeMenu(QString const& id)
{
    auto menu = std::make_unique<QMenu>(this);
    auto& store = m_store;
    menu->addAction(tr("Reveal in Finder"), [&store, id] { store.revealSheet(id); })
        ->setStatusTip(tr("Show this sheet in Finder"));
    menu->addAction(tr("Open in default editor"), [&store, id] { store.openSheet(id); })
        ->setStatusTip(tr("Open the sheet source in your default editor"));
    auto const row = m_model.indexOf(id);
    bool const isPinned = row.isValid() && m_model.rowAt(row).isPinned;
    menu->addAction(isPinned ? tr("Unpin") : tr("Pin to menu bar"), [&store, id] { store.togglePin(id); });
    MenuHelp::show(*menu);
    return menu;
}

// Not executed here: keys, saves and the end of a peek go on while it is open.
void SheetList::openMenu(QModelIndex const& index, QPoint place)
{
    if (!index.isValid())
        return;
    tellRow({});
    auto* const menu = makeMenu(m_model.rowAt(index).id).release();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    m_delegate.setMarkedRow(index);
    connect(menu, &QMenu::aboutToHide, this, [this] {
        m_delegate.setMarkedRow({});
        viewport()->update();
    });
    menu->popup(viewport()->mapToGlobal(place));
    viewport()->update();
}

}
