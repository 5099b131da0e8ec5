#include "reader/text/EventModifiers.h"
#include "reader/text/ReaderTextView.h"
#include "reader/text/TargetMenu.h"
#include "text/TextBoundaries.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDrag>
#include <QMouseEvent>
#include <QStyleHints>

#include <algorithm>
#include <cmath>

// What ReaderTextView does with the mouse, and its menu.
namespace Quillory {

namespace {

using namespace std::chrono_literals;

constexpr double farthestClick = 4; // from press to release
constexpr double roomAroundCharacter = 2;
constexpr auto autoScrollStep = 30ms;

double distance(QPointF a, QPointF b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

}

bool ReaderTextView::holdsCharacter(qsizetype index, QPointF point) const
{
    if (index >= length())
        return false;
    constexpr auto room = roomAroundCharacter;
    // A shape of its own for what has no width, which the toolkit's rectangles can't hold.
    auto const box = boundingRect({ index, 1 }).adjusted(-room, -room, room, room);
    return point.x() >= box.left() && point.x() <= box.right() && point.y() >= box.top() && point.y() <= box.bottom();
}

qsizetype ReaderTextView::insertionIndexAt(QPointF point) const
{
    if (point.y() < inset)
        return 0;
    if (point.y() > m_document->layout.height() + inset)
        return length();
    auto const index = characterIndexAt(point);
    if (index >= length() || string()[index] == u'\n')
        return std::min(index, length());
    auto const box = boundingRect({ index, 1 });
    auto const rightToLeft = string()[index].direction() == QChar::DirR || string()[index].direction() == QChar::DirAL;
    auto const behind = rightToLeft ? point.x() < box.center().x() : point.x() > box.center().x();
    auto const before = TextBoundaries::beforeCharacter(string(), index + 1);
    return behind ? TextBoundaries::afterCharacter(string(), before) : before;
}

int ReaderTextView::clickCountOf(QMouseEvent const& event) const
{
    auto const* const hints = QGuiApplication::styleHints();
    auto const isNear = distance(event.position(), m_press.location) <= hints->mouseDoubleClickDistance();
    auto const interval = static_cast<quint64>(hints->mouseDoubleClickInterval());
    auto const isSoon = event.timestamp() - m_press.timestamp < interval;
    if (m_press.clickCount > 0 && isNear && (isSoon || event.type() == QEvent::MouseButtonDblClick))
        return m_press.clickCount + 1;
    return event.type() == QEvent::MouseButtonDblClick ? 2 : 1;
}

TextRange ReaderTextView::unitAt(qsizetype position, Granularity granularity) const
{
    switch (granularity) {
    case Granularity::characters:
        return { position, 0 };
    case Granularity::words:
        return TextBoundaries::wordAt(string(), position);
    case Granularity::lines:
        return TextBoundaries::writtenLineAt(string(), position);
    }
    Q_UNREACHABLE();
}

void ReaderTextView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    auto const clickCount = clickCountOf(*event);
    auto const point = toContent(event->position());
    auto const place = insertionIndexAt(point);
    m_press = { event->position(), event->timestamp(), clickCount, !m_selection.isEmpty(), Drag::selecting, {} };
    m_columnOfMoves.reset();
    if (clickCount > 1) {
        auto const granularity = clickCount == 2 ? Granularity::words : Granularity::lines;
        m_press.unit = unitAt(std::min(characterIndexAt(point), length()), granularity);
        return setSelection({ m_press.unit.location, m_press.unit.end() });
    }
    if (contains(modifiersWithoutPeek(event->modifiers()), ModifierFlags::shift)) {
        m_press.unit = { m_selection.anchor, 0 };
        return setSelection({ m_selection.anchor, place });
    }
    auto const character = characterIndexAt(point);
    if (character >= m_selection.start() && character < m_selection.end() && holdsCharacter(character, point)) {
        m_press.drag = Drag::text;
        return;
    }
    m_press.unit = { place, 0 };
    setSelection({ place, place });
}

void ReaderTextView::mouseMoveEvent(QMouseEvent* event)
{
    if (!event->buttons().testFlag(Qt::LeftButton) || m_press.drag == Drag::none)
        return updateCursor(event->position());
    if (m_press.drag == Drag::text) {
        if (distance(event->position(), m_press.location) >= QApplication::startDragDistance())
            startTextDrag();
        return;
    }
    // A hand that trembles on a click selects nothing.
    auto const isClick = m_press.clickCount == 1 && distance(event->position(), m_press.location) <= farthestClick;
    if (isClick && !m_autoScroll.isActive() && m_selection.isEmpty())
        return;
    extendSelection(event->position());
}

void ReaderTextView::extendSelection(QPointF point)
{
    m_dragPoint = point;
    auto const granularity = m_press.clickCount == 1 ? Granularity::characters
        : m_press.clickCount == 2                    ? Granularity::words
                                                     : Granularity::lines;
    // Beyond an edge the text comes nearer, the faster the further away the mouse is.
    auto const beyond = point.y() < 0 ? point.y() : std::max(0.0, point.y() - height());
    auto const beside = point.x() < 0 ? point.x() : std::max(0.0, point.x() - width());
    if (beyond != 0 || beside != 0) {
        setScrollOrigin(m_origin + QPointF(beside, beyond));
        if (!m_autoScroll.isActive())
            m_autoScroll.start(static_cast<int>(autoScrollStep.count()), this);
    } else {
        m_autoScroll.stop();
    }
    auto const edge = QPointF(point.x(), std::clamp<double>(point.y(), 0, height()));
    auto const place = insertionIndexAt(toContent(edge));
    if (granularity == Granularity::characters)
        return setSelection({ m_press.unit.location, place });
    auto const unit = unitAt(std::min(characterIndexAt(toContent(edge)), length()), granularity);
    if (unit.location < m_press.unit.location)
        setSelection({ m_press.unit.end(), unit.location });
    else
        setSelection({ m_press.unit.location, std::max(unit.end(), m_press.unit.end()) });
}

void ReaderTextView::startTextDrag()
{
    auto selected = m_pasteboard.data(rendered().text, { m_selection.start(), m_selection.length() });
    if (!selected) {
        // The text can't be taken along: the drag selects anew.
        auto const place = insertionIndexAt(toContent(m_press.location));
        m_press.unit = { place, 0 };
        m_press.drag = Drag::selecting;
        return;
    }
    m_press.drag = Drag::none;
    auto* const drag = new QDrag(this);
    drag->setMimeData(selected.release());
    drag->exec(Qt::CopyAction);
}

void ReaderTextView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_autoScroll.stop();
    auto const drag = std::exchange(m_press.drag, Drag::none);
    if (drag == Drag::none)
        return;
    if (drag == Drag::text) {
        auto const place = insertionIndexAt(toContent(m_press.location));
        setSelection({ place, place });
    }
    offerPrimarySelection();
    finishClick(*event);
    updateCursor(event->position());
}

void ReaderTextView::finishClick(QMouseEvent const& event)
{
    auto const modifiers = modifiersWithoutPeek(event.modifiers());
    constexpr auto blocking = ModifierFlags::shift | ModifierFlags::option | ModifierFlags::command;
    if (m_press.clickCount != 1 || (modifiers & blocking) != ModifierFlags::none || m_press.hadSelection
        || !m_selection.isEmpty())
        return;
    auto const moved = distance(event.position(), m_press.location);
    auto const point = toContent(m_press.location);
    auto const index = characterIndexAt(point);
    if (moved > farthestClick || !holdsCharacter(index, point))
        return;
    if (auto const link = linkAt(point); !link.isEmpty() && onOpenLink)
        onOpenLink(link);
    if (auto const target = m_document->targetAt(index))
        copyTarget(*target);
}

QString ReaderTextView::linkAt(QPointF point) const
{
    auto const index = characterIndexAt(point);
    if (!holdsCharacter(index, point))
        return {};
    auto const& text = rendered().text;
    return text.attributes(text.runs()[static_cast<std::size_t>(text.runAt(index))]).link;
}

void ReaderTextView::updateCursor(QPointF point)
{
    auto const shape = linkAt(toContent(point)).isEmpty() ? Qt::IBeamCursor : Qt::PointingHandCursor;
    if (cursor().shape() != shape)
        setCursor(shape);
}

std::unique_ptr<QMenu> ReaderTextView::makeMenu()
{
    auto menu = std::make_unique<QMenu>(this);
    if (m_learningModeEnabled) {
        menu->addAction(tr("Copying is disabled in Learning Mode"))->setEnabled(false);
        return menu;
    }
    auto* const copySelection = menu->addAction(tr("Copy"), this, &ReaderTextView::copy);
    copySelection->setEnabled(!m_selection.isEmpty());
    menu->addAction(tr("Select All"), this, &ReaderTextView::selectAll)->setEnabled(length() > 0);
    if (m_document->targetCount() == 0)
        return menu;
    menu->addSeparator();
    constexpr qsizetype titleCharacters = 40;
    auto const title = [this](qsizetype index) {
        return index < m_document->targetCount() ? CopyLook::label(m_document->target(index).text, titleCharacters)
                                                 : QString();
    };
    addTargetItems(*menu, m_document->targetCount(), title, [this](qsizetype index) { copyTarget(index); });
    return menu;
}

void ReaderTextView::contextMenuEvent(QContextMenuEvent* event)
{
    auto* const menu = makeMenu().release();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(event->globalPos());
}

}
