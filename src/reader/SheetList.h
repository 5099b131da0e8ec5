#pragma once

#include "library/LibraryStore.h"

#include <QAbstractListModel>
#include <QListView>

namespace Quillory {

// The sidebar's rows: the titles of the sheets, in their order.
class SheetListModel : public QAbstractListModel {
    Q_OBJECT
public:
    using QAbstractListModel::QAbstractListModel;

    void setSheets(QList<Sheet> const& sheets);

    int rowCount(QModelIndex const& parent = {}) const override;
    QVariant data(QModelIndex const& index, int role) const override;

    QString idOf(QModelIndex const& index) const { return m_rows.at(index.row()).id; }
    QModelIndex indexOf(QString const& id) const;

private:
    struct Row {
        QString id;
        QString title;
        bool operator==(Row const&) const = default;
    };
    QList<Row> m_rows;
};

// The sidebar's list. Selecting a row selects the sheet; the keyboard stays with the text.
class SheetList : public QListView {
    Q_OBJECT
public:
    explicit SheetList(LibraryStore& store, QWidget* parent = nullptr);

    // Takes over the store's sheets and selection.
    void refresh();

    // Scrolls to where the selection is, the top when there is none.
    void showSelection();

private:
    LibraryStore& m_store;
    SheetListModel m_model;
};

}
