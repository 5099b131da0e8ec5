#include "settings/StatusLine.h"

#include "reader/WindowColors.h"
#include "textlayout/SymbolPainting.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

#include <utility>

namespace Quillory {

namespace {

constexpr int gap = 6; // points

}

StatusLine::StatusLine(QString symbol, QString const& text, QWidget* parent)
    : QWidget(parent)
    , m_symbol(std::move(symbol))
    , m_text(new QLabel(text, this))
{
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(fontMetrics().height() + gap, 0, 0, 0);
    row->addWidget(m_text);
}

void StatusLine::paintEvent(QPaintEvent*)
{
    auto const side = fontMetrics().height();
    QPainter painter(this);
    paintSymbol(painter, m_symbol, QRectF(0, 0, side, side), WindowColors::fromPalette(palette()).label);
}

}
