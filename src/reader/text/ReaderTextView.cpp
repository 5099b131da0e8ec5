#include "reader/text/ReaderTextView.h"

#include "reader/text/BlockPainter.h"
#include "reader/text/EventModifiers.h"
#include "reader/text/FocusRing.h"
#include "reader/text/ReaderTextViewAccessible.h"
#include "reader/text/Wash.h"
#include "text/SearchFolding.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QPaintEvent>
#include <QPainter>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>

namespace Quillory {

namespace {

using namespace std::chrono_literals;

constexpr auto idleSlice = 4ms; // a quarter of a frame: keys and painting don't wait for more
constexpr qsizetype foldedAtOnce = 2'048; // units, of which several steps fit into that time
constexpr QSize firstSize { 440, 300 }; // points, until the view is laid out

}

ReaderTextView::ReaderTextView(Executor& executor, Clipboard& clipboard, QWidget* parent)
    : QWidget(parent)
    , m_executor(executor)
    , m_colors(ColorSet::fromPalette(palette()))
    , m_document(std::make_unique<ReaderDocument>(
          RenderedMarkdown(), ReaderDocument::smallestCodeWidth, firstSize.width(), FontSet::ofDesktop(), m_colors))
    , m_pasteboard(clipboard)
    , m_buttons(*this, executor)
    , m_pointer(*this, executor)
{
    ReaderTextViewAccessible::install();
    setAccessibleName(tr("Cheat sheet content"));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setCursor(Qt::IBeamCursor);
    setAttribute(Qt::WA_OpaquePaintEvent);
    // A mirrored view would start at the far end of text wider than itself.
    setLayoutDirection(Qt::LeftToRight);
    resize(firstSize);
    m_buttons.onClick = [this](qsizetype target) { copyTarget(target); };
    m_buttons.onCopiedChanged = [this] {
        update();
        Q_EMIT copiedChanged();
    };
}

ReaderTextView::~ReaderTextView() = default;

std::unique_ptr<ReaderDocument> ReaderTextView::show(std::unique_ptr<ReaderDocument> document)
{
    document->fit(textWidth(), m_colors);
    auto old = std::exchange(m_document, std::move(document));
    old->leave();
    takeUpText();
    return old;
}

void ReaderTextView::extend(std::unique_ptr<ReaderDocument> document)
{
    auto const anchor = scrollAnchor();
    document->fit(textWidth(), m_colors);
    m_document = std::move(document);
    keepAtTop(anchor);
    layOut();
    Q_EMIT targetsChanged();
}

void ReaderTextView::completeNow()
{
    if (auto const complete = std::exchange(completeText, nullptr))
        complete();
}

// The text is another one: nothing that was noted of the old one holds.
void ReaderTextView::takeUpText()
{
    m_buttons.clear();
    m_pointer.cancel();
    tellLink({});
    hoverLink({}, {});
    m_commands.forgetColumn();
    setSelection(m_selection);
    layOut();
    Q_EMIT targetsChanged();
}

void ReaderTextView::setLearningModeEnabled(bool isEnabled)
{
    if (m_learningModeEnabled == isEnabled)
        return;
    m_learningModeEnabled = isEnabled;
    m_pasteboard.setLearningModeEnabled(isEnabled);
    m_buttons.setLook(isEnabled, m_colors);
    m_buttons.showNoneCopied();
    m_pointer.lookAgain();
    Q_EMIT targetsChanged();
}

void ReaderTextView::startAfresh()
{
    setSelection({});
    m_buttons.showNoneCopied();
}

void ReaderTextView::startIdleWork()
{
    if (!isComplete() && !m_idleTask.isActive())
        m_idleTask = m_executor.post([this] { doIdleWork(); });
}

void ReaderTextView::doIdleWork()
{
    m_idleTask.end();
    // A person may look for something at once; heights that are estimates do no harm.
    if (!m_document->folded().isComplete())
        foldSome();
    else if (!m_document->layout().isExact())
        makeSomeExact();
    startIdleWork();
}

void ReaderTextView::foldSome()
{
    auto& folded = m_document->folded();
    QDeadlineTimer const deadline(idleSlice, Qt::PreciseTimer);
    do
        folded.foldSome(foldedAtOnce);
    while (!folded.isComplete() && !deadline.hasExpired());
}

void ReaderTextView::makeSomeExact()
{
    auto const atEnd = m_origin.y() > 0 && m_origin.y() >= endOfScrolling() - 1;
    auto const result = m_document->layout().makeSomeExact(m_origin.y() - inset, idleSlice);
    auto const origin = m_origin + QPointF(0, result.correction);
    auto const next = constrained(origin);
    moveOrigin(next);
    // A text that became exact may end sooner than estimated: then lines above come into view.
    if (next != origin || atEnd)
        layOut();
    else
        Q_EMIT moved();
    if (result.correction != 0)
        layOutButtons();
}

bool ReaderTextView::event(QEvent* event)
{
    auto const isFontChange = event->type() == QEvent::ApplicationFontChange || event->type() == QEvent::FontChange;
    if (isFontChange && FontSet::ofDesktop() != fonts()) {
        m_document->setFonts(FontSet::ofDesktop(), m_colors);
        takeUpText();
    }
    if (event->type() == QEvent::ShortcutOverride && m_commands.claims(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void ReaderTextView::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange) {
        m_colors = ColorSet::fromPalette(palette());
        m_buttons.setLook(m_learningModeEnabled, m_colors);
        update();
    }
    QWidget::changeEvent(event);
}

// At the very top there is nothing above that could push the first line away, spacing and inset included.
void ReaderTextView::keepAtTop(TextAnchor const& anchor)
{
    if (m_origin.y() > 0)
        m_origin.setY(std::max(0.0, m_document->layout().positionOf(anchor) + inset));
}

// At another width the line at the top stays there.
void ReaderTextView::resizeEvent(QResizeEvent*)
{
    if (m_document->fits(textWidth()))
        return layOut();
    auto const anchor = m_document->layout().anchorAt(m_origin.y() - inset);
    auto const change = m_document->fit(textWidth(), m_colors);
    keepAtTop(anchor);
    m_commands.forgetColumn();
    if (change == ReaderDocument::Change::rendered)
        takeUpText();
    else
        layOut();
}

ModifierFlags ReaderTextView::modifiersWithoutPeek(Qt::KeyboardModifiers modifiers) const
{
    return without(modifierFlags(modifiers), peekModifiers);
}

void ReaderTextView::keyPressEvent(QKeyEvent* event)
{
    completeNow();
    if (!m_commands.perform(*event))
        event->ignore();
}

void ReaderTextView::focusInEvent(QFocusEvent* event)
{
    m_showsFocus = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    QWidget::focusInEvent(event);
    update();
}

void ReaderTextView::focusOutEvent(QFocusEvent* event)
{
    m_showsFocus = false;
    QWidget::focusOutEvent(event);
    update();
}

void ReaderTextView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_commands.forgetColumn();
    m_pointer.press(*event);
}

void ReaderTextView::mouseMoveEvent(QMouseEvent* event)
{
    m_pointer.move(*event);
}

void ReaderTextView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        m_pointer.release(*event);
}

void ReaderTextView::leaveEvent(QEvent*)
{
    m_pointer.leave();
}

std::unique_ptr<QMenu> ReaderTextView::makeMenu() const
{
    return m_commands.makeMenu();
}

void ReaderTextView::contextMenuEvent(QContextMenuEvent* event)
{
    completeNow();
    auto* const menu = makeMenu().release();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(event->globalPos());
}

void ReaderTextView::setSelection(TextSelection selection)
{
    selection = selection.clamped(length());
    if (selection == m_selection)
        return;
    m_selection = selection;
    m_pointer.lookAgain();
    update();
    tellLink(m_document->linkOf(m_selection.head));
    Q_EMIT selectionChanged();
}

void ReaderTextView::tellLink(QString const& link)
{
    setAccessibleDescription(LinkHelp::of(link));
}

void ReaderTextView::hoverLink(QString const& link, QRectF const& place)
{
    if (m_linkHelp.hover(link, place.translated(-m_origin)))
        tellLink(link);
}

QRectF ReaderTextView::boundingRect(TextRange range) const
{
    return m_document->layout().boundingRect(range.location, range.length).translated(inset, inset);
}

bool ReaderTextView::findNext(QString const& query, bool backwards)
{
    using Direction = FoldedText::Direction;
    auto const folded = foldedForSearch(query);
    if (folded.isEmpty())
        return false;
    completeNow();
    auto& text = m_document->folded();
    auto const direction = backwards ? Direction::backwards : Direction::forwards;
    auto match = backwards ? text.find(folded, 0, m_selection.start(), direction)
                           : text.find(folded, m_selection.end(), length(), direction);
    if (!match)
        match = text.find(folded, 0, length(), direction);
    if (!match)
        return false;
    setSelection({ match->location, match->end() });
    scrollToVisible(*match, ScrollTo::middle);
    return true;
}

bool ReaderTextView::copyTarget(qsizetype index)
{
    if (m_learningModeEnabled || index < 0 || index >= m_document->targetCount() || !onCopy)
        return false;
    if (!onCopy(m_document->target(index).text))
        return false;
    m_buttons.showCopied(index);
    return true;
}

void ReaderTextView::copy()
{
    m_pasteboard.offer(Clipboard::Pasteboard::general, rendered().text, m_selection.range());
}

void ReaderTextView::offerPrimarySelection() const
{
    m_pasteboard.offer(Clipboard::Pasteboard::selection, rendered().text, m_selection.range());
}

std::optional<QString> ReaderTextView::selectedText() const
{
    return m_pasteboard.text(rendered().text, m_selection.range());
}

void ReaderTextView::selectAll()
{
    setSelection({ 0, length() });
    offerPrimarySelection();
}

QRectF ReaderTextView::blockRectangle(qsizetype targetIndex) const
{
    if (targetIndex < 0 || targetIndex >= m_document->targetCount())
        return {};
    auto const glyphs = boundingRect(rendered().copyTargets.range(targetIndex));
    auto const width = std::min(textWidth(), textWidths().container);
    return { m_origin.x() + inset, glyphs.top() - CodeBlock::margin, width,
        std::max(glyphs.height() + 2 * CodeBlock::margin, CodeBlock::smallestHeight) };
}

std::vector<CodeBlock> ReaderTextView::blocksIn(QRectF const& visible) const
{
    auto const margin = CodeBlock::smallestHeight; // a block may reach that far beyond its text
    auto const [first, end] = m_document->blocksIn(textRangeFor(visible.adjusted(0, -margin, 0, margin)));
    std::vector<CodeBlock> blocks;
    for (auto block = first; block < end; ++block) {
        auto const target = blockTargets()[block];
        if (auto const rectangle = blockRectangle(target); rectangle.intersects(visible))
            blocks.push_back({ target, rectangle });
    }
    return blocks;
}

void ReaderTextView::layOutButtons()
{
    m_buttons.layOut(blocksIn(QRectF(m_origin, QSizeF(size()))), *m_document, m_origin);
    update();
}

void ReaderTextView::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), ReaderColors::surface.resolved(m_colors.appearance));
    // Whole pixels of the device keep lines and glyphs sharp.
    auto const scale = devicePixelRatioF();
    QPointF const origin(std::round(m_origin.x() * scale) / scale, std::round(m_origin.y() * scale) / scale);
    auto const visible = QRectF(event->rect()).translated(origin);
    BlockPainter const blocks(blocksIn(visible), m_colors.appearance);
    painter.translate(-origin);
    painter.setRenderHint(QPainter::Antialiasing);
    blocks.paintBackgrounds(painter);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.save();
    painter.translate(inset, inset);
    auto const ofText = visible.translated(-inset, -inset);
    m_document->layout().paint(painter, ofText, m_colors);
    if (!m_selection.isEmpty())
        paintWash(painter, m_document->layout().selectionRects(m_selection.range(), ofText),
            palette().color(QPalette::Active, QPalette::Highlight), m_colors.appearance);
    painter.restore();
    painter.setRenderHint(QPainter::Antialiasing);
    m_inlineTargets.paint(painter, visible);
    blocks.paintEdges(painter, m_origin.x(), width());
    if (m_showsFocus) {
        painter.resetTransform();
        paintFocusRing(painter, rect(), 0, ReaderColors::commandKey.resolved(m_colors.appearance));
    }
}

}
