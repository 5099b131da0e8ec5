#include "reader/CheckRow.h"

#include "reader/WindowColors.h"
#include "reader/text/FocusRing.h"
#include "textlayout/SymbolPainting.h"

#include <QPainter>

#include <algorithm>

namespace Quillory {

namespace {

constexpr int smallestBox = 16; // points, as all that follows
constexpr int padding = 6;
constexpr int smallestHeight = 26;
constexpr double radius = 4;
constexpr double outline = 1;

int boxSideOf(QFontMetrics const& metrics)
{
    return std::max(smallestBox, metrics.ascent());
}

}

CheckRow::CheckRow(QString const& text, QWidget* parent)
    : QCheckBox(text, parent)
{
    setAttribute(Qt::WA_Hover);
}

int CheckRow::rowHeight() const
{
    return std::max(smallestHeight, fontMetrics().height() + padding);
}

QSize CheckRow::sizeHint() const
{
    return { fontMetrics().horizontalAdvance(text()) + boxSideOf(fontMetrics()) + 4 * padding, rowHeight() };
}

bool CheckRow::hitButton(QPoint const& point) const
{
    return rect().contains(point);
}

void CheckRow::paintEvent(QPaintEvent*)
{
    auto const colors = WindowColors::fromPalette(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (underMouse()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(isDown() ? colors.pressed : colors.hover);
        painter.drawRoundedRect(rect(), radius, radius);
    }
    auto const boxSide = boxSideOf(fontMetrics());
    QRectF const box(padding, (height() - boxSide) / 2.0, boxSide, boxSide);
    painter.setPen(isChecked() ? QPen(Qt::NoPen) : QPen(colors.outline, outline));
    painter.setBrush(isChecked() ? colors.accent : colors.surface);
    painter.drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    if (isChecked())
        paintSymbol(painter, QStringLiteral("checkmark"), box.adjusted(2, 2, -2, -2), colors.accentText);
    painter.setPen(colors.label);
    painter.drawText(rect().adjusted(boxSide + 2 * padding, 0, 0, 0), Qt::AlignVCenter | Qt::TextSingleLine, text());
    if (hasFocus())
        paintFocusRing(painter, rect(), radius, colors.focus);
}

}
