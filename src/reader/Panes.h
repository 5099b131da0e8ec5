#pragma once

#include <QWidget>

class QToolButton;

namespace Quillory {

// The parts of the reader's bars. The style sheet of ReaderView knows them by their names.

// A bar's or a side's ground: "chrome" or "surface".
void makePane(QWidget& widget, char const* name);
QWidget* makeSeparator(QWidget* parent);
// Says what a control is for, under the pointer.
void setHelp(QWidget& widget, QString const& text);
// A small cross that never takes the keyboard; the label is spoken and shown under the pointer.
QToolButton* makeCloseButton(QWidget* parent, QString const& label);

}
