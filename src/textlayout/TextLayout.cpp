#include "textlayout/TextLayout.h"

namespace Quillory {

TextLayout::TextLayout(AttributedText text, double width, FontSet fonts, ColorSet colors)
    : m_context(std::make_unique<LayoutContext>(std::move(text), std::move(fonts), std::move(colors)))
    , m_flow(std::make_unique<TextFlow>(
          *m_context, TextRange { 0, m_context->text().length() }, width, TextFlow::Tables::asGrids))
{
}

TextLayout::ScrollCorrection TextLayout::layOutVisible(double top, double height)
{
    // The anchor makes the first unit exact, and what is laid out below it moves nothing above.
    auto const anchored = m_flow->positionOf(m_flow->anchorAt(top));
    m_flow->layOut(anchored, anchored + height);
    return anchored - top;
}

TextLayout::IdleResult TextLayout::makeSomeExact(double top, std::chrono::milliseconds budget)
{
    if (m_flow->isExact())
        return {};
    auto const anchor = m_flow->anchorAt(top);
    auto const moreLeft = m_flow->makeSomeExact(QDeadlineTimer(budget, Qt::PreciseTimer));
    return { m_flow->positionOf(anchor) - top, moreLeft };
}

std::pair<qsizetype, qsizetype> TextLayout::unitRangeFor(double y0, double y1) const
{
    if (m_flow->unitCount() == 0)
        return { 0, 0 };
    return { m_flow->unitAt(y0), m_flow->unitAt(y1) + 1 };
}

TextRange TextLayout::textRangeFor(double y0, double y1) const
{
    auto const [first, behind] = unitRangeFor(y0, y1);
    if (first == behind)
        return {};
    auto const start = m_flow->unitRange(first).location;
    return { start, m_flow->unitRange(behind - 1).end() - start };
}

std::vector<QRectF> TextLayout::selectionRects(TextRange range, QRectF const& visible) const
{
    std::vector<QRectF> covered;
    m_flow->addSelection(covered, range, {}, visible);
    return covered;
}

void TextLayout::paint(QPainter& painter, QRectF const& visible, ColorSet const& colors)
{
    if (m_context->colors() != colors) {
        m_context->setColors(colors);
        m_flow->forgetLines();
    }
    m_flow->paint(painter, {}, visible);
}

}
