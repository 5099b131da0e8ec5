#include "textlayout/TextLayout.h"

#include "textlayout/CodeWidth.h"

#include <algorithm>

namespace Quillory {

TextLayout::TextLayout(AttributedText const& text, TextWidths const& widths, FontSet fonts, ColorSet colors)
    : m_context(std::make_unique<LayoutContext>(text, std::move(fonts), colors))
    , m_widths(widths)
    , m_codeWidth(std::min(codeWidth(*m_context, largestCodeWidth), largestCodeWidth))
    , m_chapters(std::make_unique<TextChapters>(*m_context, roomyWidths()))
{
}

void TextLayout::setWidths(TextWidths const& widths)
{
    m_widths = widths;
    m_chapters->setWidths(roomyWidths());
}

double TextLayout::usedWidth() const
{
    return std::max(m_chapters->usedWidth(), m_codeWidth);
}

TextLayout::ScrollCorrection TextLayout::layOutVisible(double top, double height)
{
    // The anchor makes the first unit exact, and what is laid out below it moves nothing above.
    auto const anchored = m_chapters->positionOf(m_chapters->anchorAt(top));
    m_chapters->layOut(anchored, anchored + height);
    return anchored - top;
}

TextLayout::IdleResult TextLayout::makeSomeExact(double top, std::chrono::milliseconds budget)
{
    if (m_chapters->isExact())
        return {};
    auto const anchor = m_chapters->anchorAt(top);
    auto const moreLeft = m_chapters->makeSomeExact(QDeadlineTimer(budget, Qt::PreciseTimer));
    return { m_chapters->positionOf(anchor) - top, moreLeft };
}

std::vector<QRectF> TextLayout::selectionRects(TextRange range, QRectF const& visible) const
{
    std::vector<QRectF> covered;
    m_chapters->addSelection(covered, range, visible);
    return covered;
}

void TextLayout::paint(QPainter& painter, QRectF const& visible, ColorSet const& colors)
{
    if (m_context->colors() != colors) {
        m_context->setColors(colors);
        m_chapters->forgetLines();
    }
    m_chapters->paint(painter, visible);
}

}
