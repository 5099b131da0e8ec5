#include "reader/text/ReaderTextView.h"

#include "reader/text/ReaderTextViewAccessible.h"
#include "text/SearchFolding.h"

#include <QKeyEvent>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>

namespace Quillory {

namespace {

using namespace std::chrono_literals;

constexpr auto idleSlice = 4ms;
constexpr qsizetype foldedAtOnce = 2'048; // units, of which several steps fit into that time

// Bottoms settle within a step or two; the bound keeps a faulty height from hanging the program.
constexpr int mostPasses = 8;

constexpr double buttonRoom = 68; // kept free at the right edge of blocks
constexpr double firstWidth = 440; // of the text, until the view is laid out

}

ReaderTextView::ReaderTextView(Executor& executor, QWidget* parent)
    : QWidget(parent)
    , m_executor(executor)
    , m_colors(ColorSet::fromPalette(palette()))
    , m_document(std::make_unique<ReaderDocument>(RenderedMarkdown(), firstWidth, FontSet::ofDesktop(), m_colors))
{
    ReaderTextViewAccessible::install();
    setAccessibleName(tr("Cheat sheet content"));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setCursor(Qt::IBeamCursor);
    setAttribute(Qt::WA_OpaquePaintEvent);
    // A mirrored view would start at the far end of text wider than itself.
    setLayoutDirection(Qt::LeftToRight);
    resize(440, 300);
}

ReaderTextView::~ReaderTextView() = default;

void ReaderTextView::setRendered(RenderedMarkdown rendered)
{
    take(std::make_unique<ReaderDocument>(std::move(rendered), textWidths(), FontSet::ofDesktop(), m_colors));
}

void ReaderTextView::setRendered(RenderedMarkdown rendered, TextWidths const& widths)
{
    auto const anchor = m_document->layout.anchorAt(m_origin.y() - inset);
    auto document = std::make_unique<ReaderDocument>(std::move(rendered), widths, FontSet::ofDesktop(), m_colors);
    // At the very top there is nothing above that could push the first line away, spacing and inset included.
    if (m_origin.y() > 0)
        m_origin.setY(std::max(0.0, document->layout.positionOf(anchor) + inset));
    take(std::move(document));
}

std::unique_ptr<ReaderDocument> ReaderTextView::exchangeDocument(std::unique_ptr<ReaderDocument> document)
{
    auto old = std::move(m_document);
    old->layout.forgetLines();
    take(std::move(document));
    return old;
}

void ReaderTextView::take(std::unique_ptr<ReaderDocument> document)
{
    m_document = std::move(document);
    m_buttonsDirty = true;
    m_press.drag = Drag::none;
    m_columnOfMoves.reset();
    setSelection(m_selection);
    layOut();
    layoutCodeButtons();
    updateCopyActions();
}

void ReaderTextView::setLearningModeEnabled(bool isEnabled)
{
    if (m_learningModeEnabled == isEnabled)
        return;
    m_learningModeEnabled = isEnabled;
    m_pasteboard.setLearningModeEnabled(isEnabled);
    showCopied({});
    layoutCodeButtons();
    updateCopyActions();
}

void ReaderTextView::startAfresh()
{
    setSelection({});
    showCopied({});
}

void ReaderTextView::updateCopyActions()
{
    Q_EMIT targetsChanged();
}

void ReaderTextView::setTextWidths(TextWidths const& widths)
{
    if (widths == textWidths())
        return;
    auto& layout = m_document->layout;
    m_columnOfMoves.reset();
    // At the very top there is nothing above that could push the first line away, spacing and inset included.
    auto const anchor = layout.anchorAt(m_origin.y() - inset);
    layout.setWidths(widths);
    if (m_origin.y() > 0)
        m_origin.setY(std::max(0.0, layout.positionOf(anchor) + inset));
    layOut();
}

void ReaderTextView::setScrollOrigin(QPointF origin)
{
    moveOrigin(constrained(origin));
    layOut();
}

void ReaderTextView::scrollToEnd()
{
    auto const start = m_origin.y();
    auto const end = [this] { return constrained({ 0, contentSize().height() }).y(); };
    auto const isNear = end() - start <= height();
    auto const target = [&] { return isNear ? std::min(end(), start + height()) : end(); };
    for (int pass = 0; pass < mostPasses && m_origin.y() < target(); ++pass)
        setScrollOrigin({ m_origin.x(), target() });
}

TextAnchor ReaderTextView::scrollAnchor()
{
    return m_document->layout.anchorAt(m_origin.y() - inset);
}

void ReaderTextView::setScrollAnchor(TextAnchor const& anchor, double x)
{
    // What lies below the line becomes exact on the way, and only then is it known how far the text reaches.
    for (int pass = 0; pass < mostPasses; ++pass) {
        auto const before = m_origin;
        QPointF const wanted(x, m_document->layout.positionOf(anchor) + inset);
        setScrollOrigin(wanted);
        if (m_origin == wanted || m_origin == before)
            return;
    }
}

QSizeF ReaderTextView::contentSize() const
{
    return { m_document->layout.usedWidth() + 2 * inset, m_document->layout.height() + 2 * inset };
}

QPointF ReaderTextView::constrained(QPointF origin) const
{
    auto const most = contentSize() - QSizeF(size());
    return { std::clamp(origin.x(), 0.0, std::max(0.0, most.width())),
        std::clamp(origin.y(), 0.0, std::max(0.0, most.height())) };
}

// Lays out what the view shows. Where that moves the end of the text, more comes into view, which is laid out in turn.
void ReaderTextView::layOut()
{
    auto origin = m_origin;
    for (int pass = 0; pass < mostPasses; ++pass) {
        auto const correction = m_document->layout.layOutVisible(origin.y() - inset, height());
        auto const next = constrained(origin + QPointF(0, correction));
        if (next == origin)
            break;
        origin = next;
    }
    moveOrigin(origin);
    layoutCodeButtons();
    Q_EMIT moved();
    update();
    startIdleWork();
}

void ReaderTextView::moveOrigin(QPointF origin)
{
    if (origin == m_origin && origin == m_toldOrigin)
        return;
    m_origin = m_toldOrigin = origin;
    update();
    if (onScroll)
        onScroll(m_origin);
}

void ReaderTextView::startIdleWork()
{
    if ((!m_document->layout.isExact() || !m_document->folded.isComplete()) && !m_idle.isActive())
        m_idle.start(0, this);
}

void ReaderTextView::doIdleWork()
{
    // A person may look for something at once; heights that are estimates do no harm.
    if (!m_document->folded.isComplete())
        foldSome();
    else if (!m_document->layout.isExact())
        makeSomeExact();
    if (m_document->folded.isComplete() && m_document->layout.isExact())
        m_idle.stop();
}

void ReaderTextView::foldSome()
{
    QDeadlineTimer const deadline(idleSlice, Qt::PreciseTimer);
    do
        m_document->folded.foldSome(foldedAtOnce);
    while (!m_document->folded.isComplete() && !deadline.hasExpired());
}

void ReaderTextView::makeSomeExact()
{
    auto const atEnd = m_origin.y() > 0 && m_origin.y() >= constrained({ 0, contentSize().height() }).y() - 1;
    auto const result = m_document->layout.makeSomeExact(m_origin.y() - inset, idleSlice);
    auto const origin = m_origin + QPointF(0, result.correction);
    auto const next = constrained(origin);
    moveOrigin(next);
    // What became exact may end sooner than estimated: then lines above come into view.
    if (next != origin || atEnd)
        layOut();
    else
        Q_EMIT moved();
    if (result.correction != 0)
        layoutCodeButtons();
}

bool ReaderTextView::event(QEvent* event)
{
    if (event->type() == QEvent::ApplicationFontChange && FontSet::ofDesktop() != m_document->layout.fonts())
        setRendered(std::exchange(m_document->rendered, {}));
    if (event->type() == QEvent::ShortcutOverride && commandOf(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void ReaderTextView::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange) {
        m_colors = ColorSet::fromPalette(palette());
        refreshButtons();
        update();
    }
    QWidget::changeEvent(event);
}

void ReaderTextView::resizeEvent(QResizeEvent*)
{
    layOut();
}

void ReaderTextView::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_idle.timerId())
        doIdleWork();
    else if (event->timerId() == m_autoScroll.timerId())
        extendSelection(m_dragPoint);
    else
        QWidget::timerEvent(event);
}

void ReaderTextView::setSelection(TextSelection selection)
{
    selection = selection.clamped(length());
    if (selection == m_selection)
        return;
    m_selection = selection;
    update();
    Q_EMIT selectionChanged();
}

qsizetype ReaderTextView::characterIndexAt(QPointF point) const
{
    return m_document->layout.characterIndexAt(point - QPointF(inset, inset));
}

QRectF ReaderTextView::boundingRect(TextRange range) const
{
    return m_document->layout.boundingRect(range.location, range.length).translated(inset, inset);
}

// Heights on the way to a place far off become exact only there, which may move it: hence several passes.
void ReaderTextView::scrollToVisible(TextRange range, ScrollTo where)
{
    auto const target = m_document->targetAt(range.location);
    auto const room = target && m_document->rendered.copyTargets.isBlock(*target) ? buttonRoom : inset;
    for (int pass = 0; pass < mostPasses; ++pass) {
        auto const rect = boundingRect(range);
        auto origin = m_origin;
        auto const isBesides = rect.top() < origin.y() || rect.bottom() > origin.y() + height();
        if (isBesides && where == ScrollTo::middle && pass == 0)
            origin.setY(rect.center().y() - height() / 2.0);
        else if (rect.top() < origin.y() || rect.height() > height())
            origin.setY(rect.top() - inset);
        else if (rect.bottom() > origin.y() + height())
            origin.setY(rect.bottom() + inset - height());
        auto const roomLeft = origin.x() + inset;
        auto const roomRight = origin.x() + width() - room;
        if (rect.left() < roomLeft)
            origin.setX(rect.left() - 2 * inset);
        else if (rect.right() > roomRight)
            origin.setX(std::min(rect.left() - 2 * inset, rect.right() + room - width()));
        origin = constrained(origin);
        if (origin == m_origin)
            return;
        setScrollOrigin(origin);
    }
}

bool ReaderTextView::findNext(QString const& query, bool backwards)
{
    using Direction = FoldedText::Direction;
    auto const folded = foldedForSearch(query);
    auto& text = m_document->folded;
    auto const direction = backwards ? Direction::backwards : Direction::forwards;
    auto match = backwards ? text.find(folded, 0, m_selection.start(), direction)
                           : text.find(folded, m_selection.end(), length(), direction);
    if (!match)
        match = text.find(folded, 0, length(), direction);
    if (!match)
        return false;
    setSelection({ match->location, match->location + match->length });
    scrollToVisible({ match->location, match->length }, ScrollTo::middle);
    return true;
}

}
