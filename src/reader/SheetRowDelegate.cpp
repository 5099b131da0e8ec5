#include "reader/SheetRowDelegate.h"

#include "reader/SheetListModel.h"
#include "textlayout/SymbolPainting.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

namespace Quillory {

namespace {

constexpr int radius = 5; // points, as all that follows
constexpr int aroundText = 5;
constexpr int ring = 2;
constexpr int ringGap = 1; // to the ground of a row that is selected as well
constexpr int markSide = 14;
constexpr int markGap = 4;

SheetListModel::Row const& rowOf(QModelIndex const& index)
{
    return static_cast<SheetListModel const*>(index.model())->rowAt(index);
}

// Beside the inset at either end, in a row that is so wide.
int roomForTitle(int width, SheetListModel::Row const& row)
{
    auto const marks = (row.error.isEmpty() ? 0 : 1) + (row.isPinned ? 1 : 0);
    return width - 2 * SheetRowDelegate::inset - marks * (markSide + markGap);
}

}

bool SheetRowDelegate::isTitleWhole(QFontMetrics const& metrics, int width, QModelIndex const& index)
{
    return metrics.horizontalAdvance(index.data().toString()) <= roomForTitle(width, rowOf(index));
}

QSize SheetRowDelegate::sizeHint(QStyleOptionViewItem const& option, QModelIndex const&) const
{
    return { 0, std::max(smallestHeight, option.fontMetrics.height() + 2 * aroundText) };
}

void SheetRowDelegate::paint(QPainter* painter, QStyleOptionViewItem const& option, QModelIndex const& index) const
{
    auto const& row = rowOf(index);
    bool const isSelected = option.state.testFlag(QStyle::State_Selected);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    paintGround(*painter, option, index);
    auto place = option.rect.adjusted(inset, 0, -inset, 0);
    auto const paintMark = [&](QString const& symbol, QColor const& color) {
        QRect box(0, 0, markSide, markSide);
        box.moveCenter(place.center());
        box.moveRight(place.right());
        place.setRight(box.left() - markGap - 1);
        paintSymbol(*painter, symbol, QStyle::visualRect(option.direction, option.rect, box),
            isSelected ? m_colors.selectedText : color);
    };
    if (row.isPinned)
        paintMark(QStringLiteral("pin.fill"), m_colors.mark);
    if (!row.error.isEmpty())
        paintMark(QStringLiteral("exclamationmark.triangle"), m_colors.warning);
    painter->setFont(option.font);
    painter->setPen(isSelected ? m_colors.selectedText : m_colors.text);
    auto const room = roomForTitle(option.rect.width(), row);
    auto const title = option.fontMetrics.elidedText(index.data().toString(), Qt::ElideRight, room);
    painter->drawText(QStyle::visualRect(option.direction, option.rect, place),
        static_cast<int>(QStyle::visualAlignment(option.direction, Qt::AlignLeft) | Qt::AlignVCenter), title);
    painter->restore();
}

void SheetRowDelegate::paintGround(
    QPainter& painter, QStyleOptionViewItem const& option, QModelIndex const& index) const
{
    bool const isSelected = option.state.testFlag(QStyle::State_Selected);
    bool const isHovered = option.state.testFlag(QStyle::State_MouseOver) || index == m_marked;
    bool const hasKeyboard = option.state.testFlag(QStyle::State_HasFocus);
    QRectF const whole = option.rect;
    painter.setPen(Qt::NoPen);
    if (isSelected || isHovered) {
        auto const gap = hasKeyboard ? ring + ringGap : 0;
        painter.setBrush(isSelected ? m_colors.selection : m_colors.hover);
        painter.drawRoundedRect(whole.adjusted(gap, gap, -gap, -gap), radius - gap / 2.0, radius - gap / 2.0);
    }
    if (hasKeyboard) {
        constexpr auto half = ring / 2.0;
        painter.setPen(QPen(m_colors.focus, ring));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(whole.adjusted(half, half, -half, -half), radius, radius);
    }
}

}
