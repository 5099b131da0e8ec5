#pragma once

#include "platform/Executor.h"
#include "reader/text/PointerGesture.h"
#include "text/TextRange.h"

#include <QPointF>

#include <optional>

class QMouseEvent;

namespace Quillory {

class ReaderTextView;

// The mouse in a text view: carries out what its gestures ask for, selects, scrolls while a selection goes beyond an
// edge, drags text out, and follows links and copies at a click. View and executor outlive it. GUI thread only.
class TextPointer {
public:
    TextPointer(ReaderTextView& view, Executor& executor);

    void press(QMouseEvent const& event);
    void move(QMouseEvent const& event);
    void release(QMouseEvent const& event);
    void leave();
    // The text is another now.
    void cancel() { m_gesture.cancel(); }
    // The text under the resting pointer may have moved, or what a click does there has changed.
    void lookAgain();

private:
    QPointF toContent(QPointF point) const;
    // The text that a place in the view selects in the units of the gesture.
    TextRange unitAt(QPointF point) const;
    TextRange caretAt(QPointF point) const;
    void select(TextRange to);
    void selectTo(QPointF point);
    void dragText();
    void click(QPointF point);
    void hover(QPointF point);
    void lookAt(QPointF point, QString const& link);

    ReaderTextView& m_view;
    Executor& m_executor;
    PointerGesture m_gesture;
    TextRange m_from; // what the press selected, from which the selection goes on
    QPointF m_last; // where a selection beyond an edge goes to
    std::optional<QPointF> m_hovered; // where the pointer rests
    Registration m_autoScroll;
};

}
