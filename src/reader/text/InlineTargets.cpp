#include "reader/text/InlineTargets.h"

#include "reader/text/ReaderTextView.h"
#include "reader/text/Wash.h"
#include "textlayout/Keycaps.h"
#include "textlayout/PixelGrid.h"

#include <QPainter>

#include <algorithm>

namespace Quillory {

namespace {

constexpr double radius = 4; // points, as the next two
constexpr double outline = 1;
constexpr double roomBeside = 2; // of the letters

}

InlineTargets::InlineTargets(ReaderTextView& view)
    : m_view(view)
{
}

std::optional<qsizetype> InlineTargets::clickableAt(QPointF point) const
{
    // A click where text is selected ends the selection.
    if (m_view.learningModeEnabled() || !m_view.selection().isEmpty())
        return {};
    auto const character = m_view.characterUnder(point);
    auto const target = character ? m_view.targetAt(*character) : std::nullopt;
    return target && !m_view.rendered().copyTargets.isBlock(*target) ? target : std::nullopt;
}

void InlineTargets::hover(std::optional<qsizetype> target)
{
    if (m_hovered == target)
        return;
    m_hovered = target;
    m_view.update();
}

std::vector<QRectF> InlineTargets::boxes(qsizetype target, QRectF const& visible) const
{
    auto const& targets = m_view.rendered().copyTargets;
    if (target >= static_cast<qsizetype>(targets.size()) || targets.isBlock(target))
        return {};
    auto const range = targets.range(target);
    auto const shown = m_view.textRangeFor(visible);
    auto const& text = m_view.rendered().text;
    auto const keycap = text.attributes(text.runs()[static_cast<std::size_t>(text.runAt(range.location))]).keycap;
    auto const room = keycap > 0 ? keycap : roomBeside;
    auto const blankAt = [&](qsizetype position) {
        auto const isBlank = position >= 0 && position < text.length() && text.string()[position] == u' ';
        return isBlank ? std::optional(m_view.boundingRect({ position, 1 })) : std::nullopt;
    };
    std::vector<QRectF> boxes;
    auto const end = std::min(range.end(), shown.end());
    for (auto place = std::max(range.location, shown.location); place < end;) {
        auto const line = m_view.lineRange(place);
        auto const next = std::min(end, std::max(line.end(), place + 1));
        auto const box = Keycaps::around(
            m_view.boundingRect({ place, next - place }), room, blankAt(range.location - 1), blankAt(range.end()));
        if (box.intersects(visible))
            boxes.push_back(box);
        place = next;
    }
    return boxes;
}

void InlineTargets::paint(QPainter& painter, QRectF const& visible) const
{
    auto const& colors = m_view.colors();
    if (auto const copied = m_view.copiedTarget())
        paintWash(painter, boxes(*copied, visible), ReaderColors::copied.resolved(colors.appearance), colors.appearance,
            radius);
    if (!m_hovered)
        return;
    painter.setPen(QPen(colors.secondaryLabel, outline));
    painter.setBrush(Qt::NoBrush);
    PixelGrid const grid(painter);
    for (auto const& box : boxes(*m_hovered, visible))
        painter.drawRoundedRect(grid.frame(box, outline), radius, radius);
}

}
