// Where the text view stands in its text.

#include "reader/text/ReaderTextView.h"

#include <algorithm>

namespace Quillory {

namespace {

// Becoming exact may move the place that is scrolled to. Bottoms settle within a step or two; the bound keeps a faulty
// height from hanging the program.
constexpr int mostPasses = 8;

// Until the step has nothing more to do.
template<typename Step>
void repeatInPasses(Step step)
{
    for (int pass = 0; pass < mostPasses; ++pass) {
        if (!step())
            return;
    }
}

}

void ReaderTextView::setScrollOrigin(QPointF origin)
{
    if (origin.y() > 0 && origin.y() >= endOfScrolling())
        completeNow();
    moveOrigin(constrained(origin));
    layOut();
}

void ReaderTextView::scrollToEnd(ToEnd how)
{
    auto const start = m_origin.y();
    auto const isOnePage = how == ToEnd::byPageWhenNear && endOfScrolling() - start <= height();
    repeatInPasses([&] {
        auto const target = isOnePage ? std::min(endOfScrolling(), start + height()) : endOfScrolling();
        if (m_origin.y() >= target)
            return false;
        setScrollOrigin({ m_origin.x(), target });
        return true;
    });
}

TextAnchor ReaderTextView::scrollAnchor()
{
    return m_document->layout().anchorAt(m_origin.y() - inset);
}

void ReaderTextView::setScrollAnchor(TextAnchor const& anchor, double x)
{
    // The text below the line becomes exact on the way, and only then is it known how far the text reaches.
    repeatInPasses([&] {
        auto const before = m_origin;
        QPointF const wanted(x, m_document->layout().positionOf(anchor) + inset);
        setScrollOrigin(wanted);
        return m_origin != wanted && m_origin != before;
    });
}

QSizeF ReaderTextView::contentSize() const
{
    auto const& layout = m_document->layout();
    return { layout.usedWidth() + 2 * inset, layout.height() + 2 * inset };
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
    repeatInPasses([&] {
        auto const correction = m_document->layout().layOutVisible(origin.y() - inset, height());
        auto const before = std::exchange(origin, constrained(origin + QPointF(0, correction)));
        return origin != before;
    });
    moveOrigin(origin);
    layOutButtons();
    m_pointer.lookAgain();
    Q_EMIT moved();
    update();
    startIdleWork();
}

void ReaderTextView::moveOrigin(QPointF origin)
{
    if (origin == m_origin && origin == m_toldOrigin)
        return;
    m_origin = m_toldOrigin = origin;
    hoverLink({}, {}); // it has gone from under the pointer
    update();
    if (onScroll)
        onScroll(m_origin);
}

// Heights on the way to a place far off become exact only there, which may move it: hence several passes.
void ReaderTextView::scrollToVisible(TextRange range, ScrollTo where)
{
    auto const target = targetAt(range.location);
    auto const room = target && rendered().copyTargets.isBlock(*target) ? CodeBlock::buttonRoom : inset;
    repeatInPasses([&] {
        auto const rect = boundingRect(range);
        auto origin = m_origin;
        auto const isOutside = rect.top() < origin.y() || rect.bottom() > origin.y() + height();
        auto const first = std::exchange(where, ScrollTo::nearest);
        if (isOutside && first == ScrollTo::middle)
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
            return false;
        setScrollOrigin(origin);
        return true;
    });
}

}
