#pragma once

#include <QWidget>

namespace Quillory {

class BarButton;

// The parts of the reader's bars. ReaderStyle knows them by their names.

// A bar's or a side's ground: "chrome" or "surface".
void makePane(QWidget& widget, char const* name);
QWidget* makeSeparator(QWidget* parent);
// Says what a control is for, under the resting pointer and to assistive programs.
void setHelp(QWidget& widget, QString const& text);
// A small cross that never takes the keyboard by a click; the label is spoken and the help shown under the pointer.
BarButton* makeCloseButton(QWidget* parent, QString const& label, QString const& help);

}
