#include "reader/text/ReaderTextView.h"

#include "rendering/ReaderColors.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

// What ReaderTextView draws, and the buttons that lie on it.
namespace Quillory {

namespace {

constexpr double blockMargin = 8; // above and below a block's text
constexpr double smallestBlockHeight = 36;
constexpr double blockRadius = 6;
constexpr double blockOutline = 0.5;
constexpr double stripWidth = 68; // keeps long lines from running under the button
constexpr double buttonFromRight = 54;
constexpr double buttonFromTop = 4;

// The last of a block, with its round corners.
QPainterPath rightEnd(QRectF const& block, double width)
{
    constexpr double corner = 2 * blockRadius;
    QPainterPath path(QPointF(block.right() - width, block.top()));
    path.arcTo(QRectF(block.right() - corner, block.top(), corner, corner), 90, -90);
    path.arcTo(QRectF(block.right() - corner, block.bottom() - corner, corner, corner), 0, -90);
    path.lineTo(block.right() - width, block.bottom());
    path.closeSubpath();
    return path;
}

// The highlight as a wash that leaves text readable whatever its colour: dark text stays dark on a light surface,
// light text light on a dark one.
QColor selectionWash(QColor const& highlight, ReaderColors::Appearance appearance)
{
    auto const isColored = highlight.hsvSaturationF() > 0.05F;
    auto const hue = std::max(highlight.hsvHueF(), 0.0F);
    if (appearance == ReaderColors::Appearance::dark)
        return QColor::fromHsvF(hue, isColored ? 0.70F : 0, 0.40F);
    return QColor::fromHsvF(hue, isColored ? 0.30F : 0, isColored ? 1.0F : 0.82F);
}

}

template<typename Visit>
void ReaderTextView::forEachVisibleBlock(QRectF const& visible, Visit visit) const
{
    auto const margin = smallestBlockHeight;
    auto const shown = m_document->layout.textRangeFor(
        visible.top() - inset - margin, visible.bottom() - inset + margin);
    auto const [first, behind] = m_document->blocksIn(shown);
    for (auto block = first; block < behind; ++block) {
        auto const rectangle = blockRectangle(m_document->blocks[block]);
        if (rectangle.intersects(visible))
            visit(m_document->blocks[block], rectangle);
    }
}

QRectF ReaderTextView::blockRectangle(qsizetype targetIndex) const
{
    if (targetIndex < 0 || targetIndex >= m_document->targetCount())
        return {};
    auto const range = m_document->rendered.copyTargets.range(targetIndex);
    auto const glyphs = boundingRect({ range.location, range.length });
    auto const width = std::min(this->width() - 2 * inset, textWidths().container);
    return { m_origin.x() + inset, glyphs.top() - blockMargin, width,
        std::max(glyphs.height() + 2 * blockMargin, smallestBlockHeight) };
}

void ReaderTextView::layoutCodeButtons()
{
    if (std::exchange(m_buttonsDirty, false)) {
        m_feedbackTask.end();
        m_copiedTarget.reset();
        for (auto* const button : std::exchange(m_codeButtons, {})) {
            button->hide();
            button->deleteLater();
        }
    }
    auto old = std::exchange(m_codeButtons, {});
    auto const take = [&](qsizetype target) -> CodeCopyButton* {
        auto const known = std::ranges::find(old, target, &CodeCopyButton::tag);
        if (known != old.end()) {
            auto* const button = *known;
            old.erase(known);
            return button;
        }
        auto* const button = new CodeCopyButton(target, m_document->target(target).text, this);
        connect(button, &CodeCopyButton::clicked, this, [this, target] { copyTarget(target); });
        return button;
    };
    forEachVisibleBlock(QRectF(m_origin, QSizeF(size())), [&](qsizetype target, QRectF const& rectangle) {
        auto* const button = take(target);
        button->refresh(m_copiedTarget == target, m_learningModeEnabled, m_colors);
        button->move(qRound(width() - buttonFromRight), qRound(rectangle.top() + buttonFromTop - m_origin.y()));
        button->show();
        m_codeButtons.push_back(button);
    });
    for (auto* const button : old) {
        button->hide();
        button->deleteLater();
    }
    update();
}

void ReaderTextView::refreshButtons()
{
    for (auto* const button : m_codeButtons)
        button->refresh(m_copiedTarget == button->tag(), m_learningModeEnabled, m_colors);
}

bool ReaderTextView::copyTarget(qsizetype index)
{
    if (m_learningModeEnabled || index < 0 || index >= m_document->targetCount() || !onCopy)
        return false;
    if (!onCopy(m_document->target(index).text))
        return false;
    showCopied(index);
    m_feedbackTask = m_executor.after(feedbackTime, [this] { showCopied({}); });
    return true;
}

void ReaderTextView::showCopied(std::optional<qsizetype> target)
{
    m_feedbackTask.end();
    m_copiedTarget = target;
    refreshButtons();
    Q_EMIT copiedChanged();
}

void ReaderTextView::paintBlocks(QPainter& painter, QRectF const& visible) const
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(ReaderColors::codeBackground.resolved(m_colors.appearance));
    forEachVisibleBlock(visible,
        [&](qsizetype, QRectF const& rectangle) { painter.drawRoundedRect(rectangle, blockRadius, blockRadius); });
}

void ReaderTextView::paintStrips(QPainter& painter, QRectF const& visible) const
{
    painter.setPen(QPen(ReaderColors::codeBorder.resolved(m_colors.appearance), blockOutline));
    forEachVisibleBlock(visible, [&](qsizetype, QRectF const& rectangle) {
        painter.fillPath(rightEnd(rectangle, stripWidth), ReaderColors::codeBackground.resolved(m_colors.appearance));
        // Long lines end with the block on either side. What lies in both shapes is not filled.
        QPainterPath block;
        block.addRoundedRect(rectangle, blockRadius, blockRadius);
        QPainterPath besides;
        besides.addRect(QRectF(m_origin.x(), rectangle.top(), width(), rectangle.height()));
        besides.addPath(block);
        painter.fillPath(besides, ReaderColors::surface.resolved(m_colors.appearance));
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(block);
    });
}

void ReaderTextView::paintSelection(QPainter& painter, QRectF const& visible) const
{
    if (m_selection.isEmpty())
        return;
    auto const isDark = m_colors.appearance == ReaderColors::Appearance::dark;
    auto const wash = selectionWash(palette().color(QPalette::Active, QPalette::Highlight), m_colors.appearance);
    painter.setCompositionMode(isDark ? QPainter::CompositionMode_Screen : QPainter::CompositionMode_Multiply);
    auto const covered = m_document->layout.selectionRects(
        { m_selection.start(), m_selection.length() }, visible.translated(-inset, -inset));
    for (auto const& rect : covered)
        painter.fillRect(rect.translated(inset, inset), wash);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void ReaderTextView::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), ReaderColors::surface.resolved(m_colors.appearance));
    // Whole pixels of the device keep lines and glyphs sharp.
    auto const scale = devicePixelRatioF();
    QPointF const origin(std::round(m_origin.x() * scale) / scale, std::round(m_origin.y() * scale) / scale);
    auto const visible = QRectF(event->rect()).translated(origin);
    painter.translate(-origin);
    painter.setRenderHint(QPainter::Antialiasing);
    paintBlocks(painter, visible);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.save();
    painter.translate(inset, inset);
    m_document->layout.paint(painter, visible.translated(-inset, -inset), m_colors);
    painter.restore();
    paintSelection(painter, visible);
    painter.setRenderHint(QPainter::Antialiasing);
    paintStrips(painter, visible);
}

}
