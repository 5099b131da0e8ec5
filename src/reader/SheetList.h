#pragma once

#include "library/LibraryStore.h"
#include "reader/SheetListModel.h"
#include "reader/SheetRowDelegate.h"

#include <QKeyEvent>
#include <QListView>
#include <QProperty>

#include <memory>
#include <vector>

class QMenu;

namespace Quillory {

// The sidebar's list of what the library search finds. Selecting a row selects the sheet; a click leaves the keyboard
// where it is. GUI thread only.
class SheetList : public QListView {
    Q_OBJECT
public:
    // The store outlives the list.
    explicit SheetList(LibraryStore& store, QWidget* parent = nullptr);

    // Takes over the store's results and selection.
    void refresh();

    // Scrolls to where the selection is, the top when there is none.
    void showSelection();

    // What can be done with a sheet.
    std::unique_ptr<QMenu> makeMenu(QString const& id);

Q_SIGNALS:
    // A key that is meant for the search.
    void typed(QKeyEvent* event);
    // Return.
    void accepted();

protected:
    void changeEvent(QEvent* event) override;
    void currentChanged(QModelIndex const& current, QModelIndex const& previous) override;
    QItemSelectionModel::SelectionFlags selectionCommand(QModelIndex const& index, QEvent const* event) const override;
    bool viewportEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QList<SheetListModel::Row> makeRows() const;
    void takeColors();
    void move(int rows);
    int rowsOfPage() const;
    void openMenu(QModelIndex const& index, QPoint place);
    void tellRow(QModelIndex const& index);

    LibraryStore& m_store;
    SheetListModel m_model;
    SheetRowDelegate m_delegate;
    QPersistentModelIndex m_told; // the row under the pointer
    bool m_areRowsOld = true;
    bool m_isFollowing = false; // the store, so that a row that becomes current is nobody's choice
    std::vector<QPropertyNotifier> m_observations;
};

}
