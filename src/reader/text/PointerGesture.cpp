#include "reader/text/PointerGesture.h"

#include <cmath>
#include <utility>

namespace Quillory {

namespace {

double distanceOf(QPointF between)
{
    return std::hypot(between.x(), between.y());
}

}

bool PointerGesture::isNearPress(QPointF location, double distance) const
{
    return distanceOf(location - m_press.location) <= distance;
}

int PointerGesture::clickCountOf(Press const& press) const
{
    auto const elapsed = press.time - m_press.time;
    auto const isSoon = elapsed.count() >= 0 && elapsed < m_limits.doubleClickInterval;
    auto const isNear = isNearPress(press.location, m_limits.doubleClickDistance);
    if (m_clickCount > 0 && isNear && (isSoon || press.isDoubleClick))
        return m_clickCount + 1;
    return press.isDoubleClick ? 2 : 1;
}

PointerGesture::OnPress PointerGesture::press(Press const& press, Limits const& limits)
{
    m_limits = limits;
    m_clickCount = clickCountOf(press);
    m_press = press;
    m_state = State::selecting;
    if (m_clickCount > 1)
        return OnPress::selectUnit;
    if (contains(press.modifiers, ModifierFlags::shift))
        return OnPress::extendSelection;
    if (!press.isOnSelection)
        return OnPress::selectUnit;
    m_state = State::holding;
    return OnPress::holdSelection;
}

PointerGesture::OnMove PointerGesture::move(QPointF location, bool isSelecting)
{
    switch (m_state) {
    case State::idle:
        return OnMove::hover;
    case State::holding:
        if (distanceOf(location - m_press.location) < m_limits.dragDistance)
            return OnMove::wait;
        m_state = State::idle;
        return OnMove::dragText;
    case State::selecting: {
        auto const maybeClick = m_clickCount == 1 && !isSelecting && isNearPress(location, farthestClick);
        return maybeClick ? OnMove::wait : OnMove::select;
    }
    }
    Q_UNREACHABLE();
}

PointerGesture::OnRelease PointerGesture::release(QPointF location, ModifierFlags modifiers, bool hasSelection)
{
    constexpr auto blocking = ModifierFlags::shift | ModifierFlags::option | ModifierFlags::command;
    switch (std::exchange(m_state, State::idle)) {
    case State::idle:
        return OnRelease::nothing;
    case State::holding:
        return OnRelease::placeCaret;
    case State::selecting:
        break;
    }
    auto const isClick = m_clickCount == 1 && (modifiers & blocking) == ModifierFlags::none && !m_press.hasSelection
        && !hasSelection && isNearPress(location, farthestClick);
    return isClick ? OnRelease::click : OnRelease::keepSelection;
}

PointerGesture::Unit PointerGesture::unit() const
{
    return m_clickCount <= 1 ? Unit::character : m_clickCount == 2 ? Unit::word : Unit::line;
}

}
