#pragma once

#include "reader/SheetRowColors.h"

#include <QAbstractItemDelegate>
#include <QPersistentModelIndex>

namespace Quillory {

// Paints the rows of a SheetListModel: a title, and marks for an error and a pin.
class SheetRowDelegate : public QAbstractItemDelegate {
    Q_OBJECT
public:
    static constexpr int smallestHeight = 28; // points
    static constexpr int inset = 8;           // of a title from the row's edges

    using QAbstractItemDelegate::QAbstractItemDelegate;

    void setColors(SheetRowColors const& colors) { m_colors = colors; }
    // Looks like the one under the pointer, while its menu is open.
    void setMarkedRow(QModelIndex const& index) { m_marked = index; }

    void paint(QPainter* painter, QStyleOptionViewItem const& option, QModelIndex const& index) const override;
    QSize sizeHint(QStyleOptionViewItem const& option, QModelIndex const& index) const override;

    // Whether the whole title has room in a row that is so wide.
    static bool isTitleWhole(QFontMetrics const& metrics, int width, QModelIndex const& index);

private:
    void paintGround(QPainter& painter, QStyleOptionViewItem const& option, QModelIndex const& index) const;

    SheetRowColors m_colors;
    QPersistentModelIndex m_marked;
};

}
