#pragma once

#include "platform/ModifierFlags.h"

#include <QPointF>

#include <chrono>

namespace Quillory {

// Turns presses, moves and releases of the mouse's left button into clicks, selections and drags of text. A value that
// knows where the pointer is and when, and nothing of the text. Places are points of the view.
class PointerGesture {
public:
    static constexpr double farthestClick = 4; // points from press to release: a hand that trembles still clicks

    // The desktop's own; distances in points.
    struct Limits {
        double doubleClickDistance = 0;
        std::chrono::milliseconds doubleClickInterval {};
        double dragDistance = 0;
    };
    struct Press {
        QPointF location;
        std::chrono::milliseconds time {}; // the event's
        ModifierFlags modifiers = ModifierFlags::none;
        bool isDoubleClick = false; // by the toolkit's count
        bool hasSelection = false; // before it
        bool isOnSelection = false;
    };

    enum class Unit { character, word, line };
    enum class OnPress { selectUnit, extendSelection, holdSelection };
    enum class OnMove { hover, wait, select, dragText };
    enum class OnRelease { nothing, placeCaret, keepSelection, click };

    OnPress press(Press const& press, Limits const& limits);
    // `isSelecting` when text is selected already, or scrolls by under the pointer. After `dragText` the gesture is over.
    OnMove move(QPointF location, bool isSelecting);
    OnRelease release(QPointF location, ModifierFlags modifiers, bool hasSelection);

    // The text can't be taken along: what was to be a drag selects from where it was pressed.
    void refuseDrag() { m_state = State::selecting; }
    // The text under the pointer is another now.
    void cancel() { m_state = State::idle; }

    // By which the press selects: one click characters, two words, three lines.
    Unit unit() const;
    QPointF pressLocation() const { return m_press.location; }

private:
    enum class State { idle, selecting, holding };

    int clickCountOf(Press const& press) const;
    bool isNearPress(QPointF location, double distance) const;

    State m_state = State::idle;
    Press m_press;
    Limits m_limits;
    int m_clickCount = 0;
};

}
