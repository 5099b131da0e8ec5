#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QString>

namespace Quillory {

// The sidebar's rows, in the order of the sheets.
class SheetListModel : public QAbstractListModel {
    Q_OBJECT
public:
    struct Row {
        QString id;
        QString title;
        QString error; // empty when there is none
        bool isPinned = false;
        bool operator==(Row const&) const = default;
    };

    using QAbstractListModel::QAbstractListModel;

    // Tells views of no more than what has changed.
    void setRows(QList<Row> rows);

    // DisplayRole is the title in one line; assistive programs get the row's marks with it, and its error.
    int rowCount(QModelIndex const& parent = {}) const override;
    QVariant data(QModelIndex const& index, int role) const override;

    Row const& rowAt(QModelIndex const& index) const { return m_rows.at(index.row()); }
    // Invalid when there is none with that id.
    QModelIndex indexOf(QString const& id) const;

private:
    void replace(qsizetype first, qsizetype removed, QList<Row> const& added);

    QList<Row> m_rows;
};

}
