#include "reader/ReaderTextView.h"

#include "rendering/ReaderColors.h"

#include <QKeyEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

namespace Quillory {

namespace {

using namespace std::chrono_literals;

constexpr double inset = 16; // of the text, on all sides
constexpr double blockMargin = 8; // above and below a block's text
constexpr double smallestBlockHeight = 36;
constexpr double blockRadius = 6;
constexpr double blockOutline = 0.5;
constexpr double lineStep = 40;
constexpr auto idleSlice = 4ms;

// Bottoms settle within a step or two; the bound keeps a faulty height from hanging the program.
constexpr int mostPasses = 8;

}

ReaderTextView::ReaderTextView(QWidget* parent)
    : QAbstractScrollArea(parent)
    , m_colors(ColorSet::fromPalette(palette()))
    , m_layout({}, m_minimumCodeWidth, FontSet::ofDesktop(), m_colors)
{
    setAccessibleName(tr("Cheat sheet content"));
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    // A mirrored view would start at the far end of text wider than itself.
    setLayoutDirection(Qt::LeftToRight);
    // A bar that comes and goes would change the width and lay everything out twice.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
}

void ReaderTextView::setRendered(RenderedMarkdown rendered)
{
    m_rendered = std::move(rendered);
    m_blocks.clear();
    for (std::size_t index = 0; index < m_rendered.copyTargets.size(); ++index) {
        if (m_rendered.copyTargets[index].isBlock)
            m_blocks.push_back(static_cast<qsizetype>(index));
    }
    m_layout = TextLayout(m_rendered.text, containerWidth(), FontSet::ofDesktop(), m_colors);
    layOut();
}

void ReaderTextView::setMinimumCodeWidth(double width)
{
    m_minimumCodeWidth = width;
    reflow();
}

void ReaderTextView::setScrollOrigin(QPointF origin)
{
    moveOrigin(constrained(origin));
    layOut();
}

double ReaderTextView::containerWidth() const
{
    return std::max(viewport()->width() - 2 * inset, m_minimumCodeWidth);
}

QSizeF ReaderTextView::contentSize() const
{
    return { m_layout.usedWidth() + 2 * inset, m_layout.height() + 2 * inset };
}

QPointF ReaderTextView::constrained(QPointF origin) const
{
    auto const most = contentSize() - QSizeF(viewport()->size());
    return { std::clamp(origin.x(), 0.0, std::max(0.0, most.width())),
        std::clamp(origin.y(), 0.0, std::max(0.0, most.height())) };
}

// Lays out what the view shows. Where that moves the end of the text, more comes into view, which is laid out in turn.
void ReaderTextView::layOut()
{
    auto origin = m_origin;
    for (int pass = 0; pass < mostPasses; ++pass) {
        auto const correction = m_layout.layOutVisible(origin.y() - inset, viewport()->height());
        auto const next = constrained(origin + QPointF(0, correction));
        if (next == origin)
            break;
        origin = next;
    }
    moveOrigin(origin);
    updateScrollBars();
    viewport()->update();
    if (!m_layout.isExact() && !m_idle.isActive())
        m_idle.start(0, this);
}

void ReaderTextView::reflow()
{
    if (containerWidth() == m_layout.width())
        return layOut();
    // At the very top there is nothing above that could push the first line away, spacing and inset included.
    auto const anchor = m_layout.anchorAt(m_origin.y() - inset);
    m_layout.setWidth(containerWidth());
    if (m_origin.y() > 0)
        m_origin.setY(std::max(0.0, m_layout.positionOf(anchor) + inset));
    layOut();
}

void ReaderTextView::moveOrigin(QPointF origin)
{
    if (origin == m_origin)
        return;
    m_origin = origin;
    viewport()->update();
    if (onScroll)
        onScroll(m_origin);
}

void ReaderTextView::updateScrollBars()
{
    m_settingBars = true;
    auto const size = contentSize();
    auto const apply = [](QScrollBar& bar, double content, int page, double value) {
        bar.setRange(0, std::max(0, static_cast<int>(std::ceil(content)) - page));
        bar.setPageStep(page);
        bar.setSingleStep(static_cast<int>(lineStep / 2));
        bar.setValue(qRound(value));
    };
    apply(*verticalScrollBar(), size.height(), viewport()->height(), m_origin.y());
    apply(*horizontalScrollBar(), size.width(), viewport()->width(), m_origin.x());
    m_settingBars = false;
}

// The bars hold whole points; what the program sets is exact, and only what a person moves is taken from them.
void ReaderTextView::scrollContentsBy(int, int)
{
    if (m_settingBars)
        return;
    auto const follow = [](double value, QScrollBar const& bar) {
        return qRound(value) == bar.value() ? value : bar.value();
    };
    setScrollOrigin({ follow(m_origin.x(), *horizontalScrollBar()), follow(m_origin.y(), *verticalScrollBar()) });
}

void ReaderTextView::resizeEvent(QResizeEvent*)
{
    reflow();
}

bool ReaderTextView::event(QEvent* event)
{
    if (event->type() == QEvent::ApplicationFontChange && FontSet::ofDesktop() != m_layout.fonts())
        setRendered(std::exchange(m_rendered, {}));
    return QAbstractScrollArea::event(event);
}

void ReaderTextView::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange) {
        m_colors = ColorSet::fromPalette(palette());
        viewport()->update();
    }
    QAbstractScrollArea::changeEvent(event);
}

void ReaderTextView::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_idle.timerId())
        return QAbstractScrollArea::timerEvent(event);
    auto const result = m_layout.makeSomeExact(m_origin.y() - inset, idleSlice);
    if (!result.moreLeft)
        m_idle.stop();
    auto const atEnd = m_origin.y() > 0 && verticalScrollBar()->value() == verticalScrollBar()->maximum();
    auto const origin = m_origin + QPointF(0, result.correction);
    auto const moved = constrained(origin);
    moveOrigin(moved);
    // What became exact may end sooner than estimated: then lines above come into view.
    if (moved != origin || atEnd)
        layOut();
    else
        updateScrollBars();
}

void ReaderTextView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape) {
        if (onDismiss)
            onDismiss();
        return;
    }
    auto const modifiers = event->modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
    if (modifiers == Qt::NoModifier && (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right)) {
        if (onNavigate)
            onNavigate(event->key() == Qt::Key_Left ? -1 : 1);
        return;
    }
    if (!scrollByKey(*event))
        event->ignore();
}

bool ReaderTextView::scrollByKey(QKeyEvent const& event)
{
    auto const page = std::max<double>(lineStep, viewport()->height() - lineStep);
    auto const by = [this](double distance) { setScrollOrigin(m_origin + QPointF(0, distance)); };
    auto const shift = event.modifiers().testFlag(Qt::ShiftModifier);
    switch (event.key()) {
    case Qt::Key_Up:
        by(-lineStep);
        return true;
    case Qt::Key_Down:
        by(lineStep);
        return true;
    case Qt::Key_PageUp:
        by(-page);
        return true;
    case Qt::Key_PageDown:
        by(page);
        return true;
    case Qt::Key_Space:
        by(shift ? -page : page);
        return true;
    case Qt::Key_Home:
        setScrollOrigin({ m_origin.x(), 0 });
        return true;
    case Qt::Key_End:
        // The last page becomes exact on the way, and the end with it.
        for (int pass = 0; pass < mostPasses && m_origin.y() < constrained({ 0, contentSize().height() }).y(); ++pass)
            setScrollOrigin({ m_origin.x(), contentSize().height() });
        return true;
    default:
        return false;
    }
}

QRectF ReaderTextView::blockRectangle(qsizetype targetIndex) const
{
    if (targetIndex < 0 || targetIndex >= std::ssize(m_rendered.copyTargets))
        return {};
    auto const& range = m_rendered.copyTargets[static_cast<std::size_t>(targetIndex)].range;
    auto const glyphs = m_layout.boundingRect(range.location, range.length);
    auto const width = std::min(viewport()->width() - 2 * inset, m_layout.width());
    return { m_origin.x() + inset, glyphs.top() + inset - blockMargin, width,
        std::max(glyphs.height() + 2 * blockMargin, smallestBlockHeight) };
}

void ReaderTextView::paintBlocks(QPainter& painter, QRectF const& visible)
{
    auto const margin = smallestBlockHeight;
    auto const shown = m_layout.textRangeFor(visible.top() - inset - margin, visible.bottom() - inset + margin);
    auto const endOf = [this](qsizetype target) {
        auto const& range = m_rendered.copyTargets[static_cast<std::size_t>(target)].range;
        return range.location + range.length;
    };
    painter.setPen(QPen(ReaderColors::codeBorder.resolved(m_colors.appearance), blockOutline));
    painter.setBrush(ReaderColors::codeBackground.resolved(m_colors.appearance));
    painter.setRenderHint(QPainter::Antialiasing);
    for (auto block = std::ranges::lower_bound(m_blocks, shown.location, {}, endOf); block != m_blocks.end(); ++block) {
        if (m_rendered.copyTargets[static_cast<std::size_t>(*block)].range.location >= shown.end())
            break;
        auto const rectangle = blockRectangle(*block);
        if (rectangle.intersects(visible))
            painter.drawRoundedRect(rectangle, blockRadius, blockRadius);
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
}

void ReaderTextView::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    painter.fillRect(event->rect(), ReaderColors::surface.resolved(m_colors.appearance));
    // Whole pixels of the device keep lines and glyphs sharp.
    auto const scale = viewport()->devicePixelRatioF();
    QPointF const origin(std::round(m_origin.x() * scale) / scale, std::round(m_origin.y() * scale) / scale);
    auto const visible = QRectF(event->rect()).translated(origin);
    painter.translate(-origin);
    paintBlocks(painter, visible);
    painter.translate(inset, inset);
    m_layout.paint(painter, visible.translated(-inset, -inset), m_colors);
}

}
