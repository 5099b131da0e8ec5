#include "reader/FocusOrder.h"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace Quillory {

namespace {

constexpr int lineHeight = 16; // points that tops within one line differ by

bool isStop(QWidget const& widget)
{
    return (widget.focusPolicy() & Qt::TabFocus) != 0 && !widget.focusProxy() && widget.isEnabled()
        && widget.isVisible();
}

}

std::vector<QWidget*> FocusOrder::stops(QWidget& scope, std::vector<QWidget*> const& first)
{
    auto const group = [&](QWidget const* widget) {
        auto const holds = [&](QWidget const* each) { return each == widget || each->isAncestorOf(widget); };
        return std::ranges::find_if(first, holds) - first.begin();
    };
    auto const place = [&](QWidget const* widget) {
        auto const origin = widget->mapTo(&scope, QPoint());
        // A view comes before what lies in it.
        bool const isItself = std::ranges::find(first, widget) != first.end();
        return std::tuple(group(widget), !isItself, origin.y() / lineHeight, origin.x());
    };
    std::vector<QWidget*> stops;
    std::ranges::copy_if(
        scope.findChildren<QWidget*>(), std::back_inserter(stops), [](QWidget const* each) { return isStop(*each); });
    std::ranges::sort(stops, {}, place);
    return stops;
}

QWidget* FocusOrder::next(std::vector<QWidget*> const& stops, QWidget const* current, bool forwards)
{
    if (stops.empty())
        return nullptr;
    auto const count = std::ssize(stops);
    auto const at = std::ranges::find(stops, current) - stops.begin();
    if (at == count)
        return forwards ? stops.front() : stops.back();
    return stops[static_cast<std::size_t>((at + (forwards ? 1 : count - 1)) % count)];
}

}
