#include "reader/text/TextPointer.h"

#include "reader/text/ReaderTextView.h"
#include "text/TextBoundaries.h"

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QStyleHints>

#include <algorithm>

namespace Quillory {

namespace {

using namespace std::chrono_literals;

constexpr auto autoScrollStep = 30ms; // smooth to the eye, and slow enough to stop in time

PointerGesture::Limits limitsOfDesktop()
{
    auto const* const hints = QGuiApplication::styleHints();
    return { static_cast<double>(hints->mouseDoubleClickDistance()),
        std::chrono::milliseconds(hints->mouseDoubleClickInterval()),
        static_cast<double>(QApplication::startDragDistance()) };
}

}

TextPointer::TextPointer(ReaderTextView& view, Executor& executor)
    : m_view(view)
    , m_executor(executor)
{
}

QPointF TextPointer::toContent(QPointF point) const
{
    return point + m_view.scrollOrigin();
}

TextRange TextPointer::caretAt(QPointF point) const
{
    return { m_view.insertionIndexAt(toContent(point)), 0 };
}

TextRange TextPointer::unitAt(QPointF point) const
{
    auto const& text = m_view.rendered().text.string();
    auto const character = [&] { return std::min(m_view.characterIndexAt(toContent(point)), text.size()); };
    switch (m_gesture.unit()) {
    case PointerGesture::Unit::character:
        return caretAt(point);
    case PointerGesture::Unit::word:
        return TextBoundaries::wordAt(text, character());
    case PointerGesture::Unit::line:
        return TextBoundaries::writtenLineAt(text, character());
    }
    Q_UNREACHABLE();
}

void TextPointer::select(TextRange to)
{
    m_view.setSelection(TextSelection::across(m_from, to));
}

void TextPointer::press(QMouseEvent const& event)
{
    auto const point = event.position();
    auto const selection = m_view.selection();
    auto const character = m_view.characterUnder(toContent(point));
    auto const isDoubleClick = event.type() == QEvent::MouseButtonDblClick;
    PointerGesture::Press const press { .location = point,
        .time = std::chrono::milliseconds(event.timestamp()),
        .modifiers = m_view.modifiersWithoutPeek(event.modifiers()),
        .isDoubleClick = isDoubleClick,
        .hasSelection = !selection.isEmpty(),
        .isOnSelection = character && *character >= selection.start() && *character < selection.end() };
    switch (m_gesture.press(press, limitsOfDesktop())) {
    case PointerGesture::OnPress::selectUnit:
        m_from = unitAt(point);
        return select(m_from);
    case PointerGesture::OnPress::extendSelection:
        m_from = { selection.anchor, 0 };
        return select(caretAt(point));
    case PointerGesture::OnPress::holdSelection:
        return;
    }
}

void TextPointer::move(QMouseEvent const& event)
{
    if (!event.buttons().testFlag(Qt::LeftButton))
        return hover(event.position());
    auto const isSelecting = m_autoScroll.isActive() || !m_view.selection().isEmpty();
    switch (m_gesture.move(event.position(), isSelecting)) {
    case PointerGesture::OnMove::hover:
        return hover(event.position());
    case PointerGesture::OnMove::wait:
        return;
    case PointerGesture::OnMove::select:
        return selectTo(event.position());
    case PointerGesture::OnMove::dragText:
        return dragText();
    }
}

// Beyond an edge the text comes nearer, the faster the further away the mouse is.
void TextPointer::selectTo(QPointF point)
{
    m_last = point;
    auto const height = static_cast<double>(m_view.height());
    auto const beyond = point.y() < 0 ? point.y() : std::max(0.0, point.y() - height);
    auto const beside = point.x() < 0 ? point.x() : std::max(0.0, point.x() - m_view.width());
    if (beyond != 0 || beside != 0) {
        m_view.setScrollOrigin(m_view.scrollOrigin() + QPointF(beside, beyond));
        if (!m_autoScroll.isActive())
            m_autoScroll = m_executor.after(autoScrollStep, [this] {
                m_autoScroll.end();
                selectTo(m_last);
            });
    } else {
        m_autoScroll.end();
    }
    select(unitAt({ point.x(), std::clamp(point.y(), 0.0, height) }));
}

void TextPointer::dragText()
{
    auto const selected = m_view.selectedText();
    if (!selected) {
        m_from = caretAt(m_gesture.pressLocation());
        return m_gesture.refuseDrag();
    }
    auto* const data = new QMimeData;
    data->setText(*selected);
    auto* const drag = new QDrag(&m_view);
    drag->setMimeData(data);
    drag->exec(Qt::CopyAction);
}

void TextPointer::release(QMouseEvent const& event)
{
    m_autoScroll.end();
    auto const modifiers = m_view.modifiersWithoutPeek(event.modifiers());
    switch (m_gesture.release(event.position(), modifiers, !m_view.selection().isEmpty())) {
    case PointerGesture::OnRelease::nothing:
        return;
    case PointerGesture::OnRelease::placeCaret:
        m_from = caretAt(m_gesture.pressLocation());
        select(m_from);
        break;
    case PointerGesture::OnRelease::keepSelection:
        m_view.offerPrimarySelection();
        break;
    case PointerGesture::OnRelease::click:
        click(toContent(m_gesture.pressLocation()));
        break;
    }
    hover(event.position());
}

void TextPointer::click(QPointF point)
{
    auto const character = m_view.characterUnder(point);
    if (!character)
        return;
    if (auto const link = m_view.linkAt(point); !link.isEmpty() && m_view.onOpenLink)
        m_view.onOpenLink(link);
    if (auto const target = m_view.targetAt(*character))
        m_view.copyTarget(*target);
}

void TextPointer::hover(QPointF point)
{
    m_hovered = point;
    auto const link = m_view.linkAt(toContent(point));
    m_view.hoverLink(link, m_view.boundingRect({ m_view.characterIndexAt(toContent(point)), 1 }));
    lookAt(point, link);
}

void TextPointer::leave()
{
    m_hovered.reset();
    m_view.inlineTargets().hover({});
}

void TextPointer::lookAgain()
{
    if (m_hovered)
        lookAt(*m_hovered, m_view.linkAt(toContent(*m_hovered)));
}

// The hand says that a click does something.
void TextPointer::lookAt(QPointF point, QString const& link)
{
    auto& targets = m_view.inlineTargets();
    auto const target = targets.clickableAt(toContent(point));
    targets.hover(target);
    auto const shape = link.isEmpty() && !target ? Qt::IBeamCursor : Qt::PointingHandCursor;
    if (m_view.cursor().shape() != shape)
        m_view.setCursor(shape);
}

}
