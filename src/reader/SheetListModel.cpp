#include "reader/SheetListModel.h"

#include "text/OneLine.h"

#include <algorithm>

namespace Quillory {

void SheetListModel::setRows(QList<Row> rows)
{
    // Only what stands between the first and the last row that came or went is made again.
    auto const [old, fresh] = std::ranges::mismatch(std::as_const(m_rows), std::as_const(rows), {}, &Row::id, &Row::id);
    auto const first = old - m_rows.cbegin();
    auto const most = std::min(m_rows.size(), rows.size()) - first;
    qsizetype same = 0; // at the end
    while (same < most && m_rows.at(m_rows.size() - 1 - same).id == rows.at(rows.size() - 1 - same).id)
        ++same;
    replace(first, m_rows.size() - first - same, rows.sliced(first, rows.size() - first - same));
    for (qsizetype position = 0; position < rows.size(); ++position) {
        if (m_rows.at(position) == rows.at(position))
            continue;
        m_rows[position] = rows.at(position);
        auto const changed = index(static_cast<int>(position));
        Q_EMIT dataChanged(changed, changed);
    }
}

void SheetListModel::replace(qsizetype first, qsizetype removed, QList<Row> const& added)
{
    auto const start = static_cast<int>(first);
    if (removed > 0) {
        beginRemoveRows({}, start, start + static_cast<int>(removed) - 1);
        m_rows.remove(first, removed);
        endRemoveRows();
    }
    if (!added.isEmpty()) {
        beginInsertRows({}, start, start + static_cast<int>(added.size()) - 1);
        m_rows = m_rows.first(first) + added + m_rows.sliced(first);
        endInsertRows();
    }
}

int SheetListModel::rowCount(QModelIndex const& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant SheetListModel::data(QModelIndex const& index, int role) const
{
    auto const& row = rowAt(index);
    switch (role) {
    case Qt::DisplayRole:
        return oneLine(row.title);
    case Qt::AccessibleTextRole:
        if (row.isPinned)
            return (row.error.isEmpty() ? tr("%1, pinned") : tr("%1, pinned, with an error")).arg(oneLine(row.title));
        return row.error.isEmpty() ? oneLine(row.title) : tr("%1, with an error").arg(oneLine(row.title));
    case Qt::AccessibleDescriptionRole:
        return row.error;
    default:
        return {};
    }
}

QModelIndex SheetListModel::indexOf(QString const& id) const
{
    auto const row = std::ranges::find(m_rows, id, &Row::id);
    return row == m_rows.cend() ? QModelIndex() : index(static_cast<int>(row - m_rows.cbegin()));
}

}
