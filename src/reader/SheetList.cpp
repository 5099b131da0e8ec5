#include "reader/SheetList.h"

#include "text/OneLine.h"

#include <algorithm>

namespace Quillory {

void SheetListModel::setSheets(QList<Sheet> const& sheets)
{
    QList<Row> rows;
    rows.reserve(sheets.size());
    for (auto const& sheet : sheets)
        rows.append({ sheet.id, oneLine(sheet.title) });
    if (rows == m_rows)
        return;
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

int SheetListModel::rowCount(QModelIndex const& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant SheetListModel::data(QModelIndex const& index, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    return m_rows.at(index.row()).title;
}

QModelIndex SheetListModel::indexOf(QString const& id) const
{
    auto const row = std::ranges::find(m_rows, id, &Row::id);
    return row == m_rows.cend() ? QModelIndex() : index(static_cast<int>(row - m_rows.cbegin()));
}

SheetList::SheetList(LibraryStore& store, QWidget* parent)
    : QListView(parent)
    , m_store(store)
{
    setModel(&m_model);
    setFocusPolicy(Qt::NoFocus);
    setFrameShape(QFrame::NoFrame);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setUniformItemSizes(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideRight);
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this, [this](QModelIndex const& current) {
        if (current.isValid())
            m_store.select(m_model.idOf(current));
    });
}

void SheetList::refresh()
{
    m_model.setSheets(m_store.sheets);
    auto const* const selected = m_store.selectedSheet();
    auto const index = selected ? m_model.indexOf(selected->id) : QModelIndex();
    if (index != currentIndex())
        setCurrentIndex(index);
}

void SheetList::showSelection()
{
    if (auto const selected = currentIndex(); selected.isValid())
        scrollTo(selected);
    else
        scrollToTop();
}

}
