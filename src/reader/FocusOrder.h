#pragma once

#include <QWidget>

#include <vector>

namespace Quillory::FocusOrder {

// What Tab stops at within `scope`, as it stands on the screen: first what lies in the `first` widgets, in their order,
// then the rest as the eye goes, line by line.
std::vector<QWidget*> stops(QWidget& scope, std::vector<QWidget*> const& first);

// The stop after or before the one with the keyboard, round the ends. Null without stops.
QWidget* next(std::vector<QWidget*> const& stops, QWidget const* current, bool forwards);

}
