#include "reader/text/ReaderScrollView.h"

#include <QEvent>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

namespace Quillory {

namespace {

constexpr int scrollStep = 20; // points that one click on a bar's arrow scrolls

// How far a bar goes. The shares of columns may add up to slightly more than the width that they share.
int farthest(double content, int page)
{
    constexpr double tolerance = 0.01; // points
    return std::max(0, static_cast<int>(std::ceil(content - tolerance)) - page);
}

}

ReaderScrollView::ReaderScrollView(Executor& executor, Clipboard& clipboard, QWidget* parent)
    : QAbstractScrollArea(parent)
    , m_textView(new ReaderTextView(executor, clipboard))
{
    setFrameShape(NoFrame);
    // A mirrored view would start at the far end of text wider than itself.
    setLayoutDirection(Qt::LeftToRight);
    // A bar that comes and goes would change the width and lay everything out twice.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setViewport(m_textView);
    m_textView->setFocusProxy(nullptr);
    setFocusProxy(m_textView);
    connect(m_textView, &ReaderTextView::moved, this, &ReaderScrollView::updateScrollBars);
    updateScrollBars();
}

void ReaderScrollView::updateScrollBars()
{
    // The toolkit shows a bar that is needed in a later turn only, too late for a place at the end that comes back.
    auto const isWide = farthest(m_textView->contentSize().width(), viewport()->width()) > 0;
    auto const policy = isWide ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff;
    if (policy != horizontalScrollBarPolicy())
        setHorizontalScrollBarPolicy(policy);
    m_settingBars = true;
    auto const size = m_textView->contentSize();
    auto const apply = [](QScrollBar& bar, double content, int page, double value) {
        bar.setRange(0, farthest(content, page));
        bar.setPageStep(page);
        bar.setSingleStep(scrollStep);
        bar.setValue(qRound(value));
        bar.setEnabled(bar.maximum() > 0); // a bar without a way to go shows no handle
    };
    auto const origin = m_textView->scrollOrigin();
    apply(*verticalScrollBar(), size.height(), viewport()->height(), origin.y());
    apply(*horizontalScrollBar(), size.width(), viewport()->width(), origin.x());
    m_settingBars = false;
}

// The bars hold whole points; what the program sets is exact, and only what a person moves is taken from them.
void ReaderScrollView::scrollContentsBy(int dx, int dy)
{
    if (m_settingBars)
        return;
    if (dx == 0 && dy < 0 && verticalScrollBar()->value() == verticalScrollBar()->maximum())
        return m_textView->scrollToEnd(ReaderTextView::ToEnd::byPageWhenNear);
    auto const follow = [](double value, QScrollBar const& bar) {
        return qRound(value) == bar.value() ? value : bar.value();
    };
    auto const origin = m_textView->scrollOrigin();
    m_textView->setScrollOrigin(
        { follow(origin.x(), *horizontalScrollBar()), follow(origin.y(), *verticalScrollBar()) });
}

// The text view takes its own events; the wheel turns the bars.
bool ReaderScrollView::viewportEvent(QEvent* event)
{
    return event->type() == QEvent::Wheel && QAbstractScrollArea::viewportEvent(event);
}

}
