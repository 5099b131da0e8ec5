#include "reader/WarningSign.h"

#include "reader/WindowColors.h"
#include "textlayout/SymbolPainting.h"

#include <QPainter>

namespace Quillory {

WarningSign::WarningSign(QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize WarningSign::sizeHint() const
{
    return { fontMetrics().height(), fontMetrics().height() };
}

void WarningSign::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintSymbol(
        painter, QStringLiteral("exclamationmark.triangle"), rect(), WindowColors::fromPalette(palette()).warning);
}

}
