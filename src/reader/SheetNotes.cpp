#include "reader/SheetNotes.h"

#include "reader/WindowColors.h"
#include "textlayout/SymbolPainting.h"

#include <QHBoxLayout>
#include <QPainter>

namespace Quillory {

namespace {

constexpr int left = 16;    // points
constexpr int between = 8;  // sign and text
constexpr int spacing = 5;  // above and below

int signSide(QFontMetrics const& metrics)
{
    return metrics.height();
}

}

SheetNotes::SheetNotes(char const* name, QWidget* parent)
    : QWidget(parent)
    , m_text(new BannerLabel(this))
{
    m_text->setObjectName(QLatin1StringView(name));
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(left + signSide(fontMetrics()) + between, spacing, left, spacing);
    row->addWidget(m_text);
    hide();
}

void SheetNotes::show(QString const& text)
{
    m_text->say(text);
    setVisible(!text.isEmpty());
}

void SheetNotes::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    auto const side = signSide(m_text->fontMetrics());
    paintSymbol(painter, QStringLiteral("exclamationmark.triangle"), QRectF(left, m_text->y(), side, side),
        WindowColors::fromPalette(palette()).warning);
}

}
