#include "reader/text/ReaderDocument.h"

#include "text/TextBoundaries.h"
#include "textlayout/FontTextMeasure.h"

#include <algorithm>
#include <ranges>

namespace Quillory {

namespace {

constexpr double narrowestText = 100; // points; narrower text is no text
constexpr double roomAroundCharacter = 2; // points

}

ReaderDocument::ReaderDocument(
    RenderedMarkdown rendered, double minimumCodeWidth, double width, FontSet fonts, ColorSet const& colors)
    : m_minimumCodeWidth(minimumCodeWidth)
    , m_rendered(std::move(rendered))
    , m_layout(m_rendered.text, widthsFor(width), std::move(fonts), colors)
{
    takeStock();
}

ReaderDocument::ReaderDocument(Shortcuts shortcuts, double width, FontSet const& fonts, ColorSet const& colors)
    : m_minimumCodeWidth(narrowestText)
    , m_shortcuts(std::move(shortcuts))
    , m_rendered(renderedFor(widthsFor(width).visible, fonts))
    , m_layout(m_rendered.text, widthsFor(width), fonts, colors)
{
    takeStock();
}

TextWidths ReaderDocument::widthsFor(double width) const
{
    return { std::max(width, narrowestText), std::max(width, m_minimumCodeWidth) };
}

RenderedMarkdown ReaderDocument::renderedFor(double width, FontSet const& fonts)
{
    auto const& [sheet, images, textSize, keyNames] = *m_shortcuts;
    if (!m_prepared)
        m_prepared.emplace(sheet, images, textSize, FontTextMeasure(fonts), keyNames);
    return m_prepared->render(width);
}

ReaderDocument::Change ReaderDocument::fit(double width, ColorSet const& colors)
{
    if (fits(width))
        return Change::none;
    auto const widths = widthsFor(width);
    if (!m_shortcuts) {
        m_layout.setWidths(widths);
        return Change::laidOut;
    }
    auto const fonts = m_layout.fonts();
    m_rendered = renderedFor(widths.visible, fonts);
    layOutAnew(widths, fonts, colors);
    return Change::rendered;
}

void ReaderDocument::setFonts(FontSet const& fonts, ColorSet const& colors)
{
    auto const widths = m_layout.widths();
    if (m_shortcuts) {
        m_prepared.reset();
        m_rendered = renderedFor(widths.visible, fonts);
    }
    layOutAnew(widths, fonts, colors);
}

void ReaderDocument::layOutAnew(TextWidths const& widths, FontSet const& fonts, ColorSet const& colors)
{
    // Not assigned: what the old one is made of goes in its order.
    TextLayout layout(m_rendered.text, widths, fonts, colors);
    std::swap(m_layout, layout);
    takeStock();
}

void ReaderDocument::takeStock()
{
    m_rendered.text = m_layout.text(); // which may be another, and two would be kept
    m_folded = FoldedText(m_rendered.text.string());
    m_blocks.clear();
    for (qsizetype index = 0; index < targetCount(); ++index) {
        if (m_rendered.copyTargets.isBlock(index))
            m_blocks.push_back(index);
    }
}

void ReaderDocument::leave()
{
    m_layout.forgetLines();
    m_prepared.reset();
}

std::optional<qsizetype> ReaderDocument::targetAt(qsizetype character) const
{
    auto const endsBefore = [&](qsizetype target) { return m_rendered.copyTargets.range(target).end() <= character; };
    auto const found = *std::ranges::partition_point(std::views::iota(qsizetype(0), targetCount()), endsBefore);
    if (found == targetCount() || !m_rendered.copyTargets.range(found).contains(character))
        return {};
    return found;
}

std::pair<std::size_t, std::size_t> ReaderDocument::blocksIn(TextRange range) const
{
    auto const endOf = [this](qsizetype block) { return m_rendered.copyTargets.range(block).end(); };
    auto const startOf = [this](qsizetype block) { return m_rendered.copyTargets.range(block).location; };
    auto const first = std::ranges::lower_bound(m_blocks, range.location, {}, endOf);
    auto const end = std::ranges::lower_bound(first, m_blocks.end(), range.end(), {}, startOf);
    return { std::distance(m_blocks.begin(), first), std::distance(m_blocks.begin(), end) };
}

std::optional<qsizetype> ReaderDocument::characterUnder(QPointF point) const
{
    auto const index = m_layout.characterIndexAt(point);
    if (index >= m_rendered.text.length())
        return {};
    constexpr auto room = roomAroundCharacter;
    // Compared by edges: a character without width has an empty rectangle, which would hold no point.
    auto const box = m_layout.boundingRect(index, 1).adjusted(-room, -room, room, room);
    auto const isInside = point.x() >= box.left() && point.x() <= box.right() && point.y() >= box.top()
        && point.y() <= box.bottom();
    return isInside ? std::optional(index) : std::nullopt;
}

qsizetype ReaderDocument::insertionIndexAt(QPointF point) const
{
    auto const& string = m_rendered.text.string();
    if (point.y() < 0)
        return 0;
    if (point.y() > m_layout.height())
        return string.size();
    auto const index = m_layout.characterIndexAt(point);
    if (index >= string.size() || string[index] == u'\n')
        return std::min(index, string.size());
    auto const box = m_layout.boundingRect(index, 1);
    auto const direction = string[index].direction();
    auto const rightToLeft = direction == QChar::DirR || direction == QChar::DirAL;
    auto const isInLastHalf = rightToLeft ? point.x() < box.center().x() : point.x() > box.center().x();
    auto const start = TextBoundaries::beforeCharacter(string, index + 1);
    return isInLastHalf ? TextBoundaries::afterCharacter(string, start) : start;
}

QString ReaderDocument::linkAt(QPointF point) const
{
    auto const character = characterUnder(point);
    return character ? linkOf(*character) : QString();
}

QString ReaderDocument::linkOf(qsizetype character) const
{
    auto const& text = m_rendered.text;
    if (character >= text.length())
        return {};
    return text.attributes(text.runs()[static_cast<std::size_t>(text.runAt(character))]).link;
}

}
