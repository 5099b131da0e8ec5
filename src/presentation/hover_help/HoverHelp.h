#pragma once

#include <QString>

class QWidget;

namespace Quillory {

// Gives the control hover help: `text` shows once the pointer has rested on it, and assistive programs get it as the
// description. A later call replaces the text. Needs a HoverHelpHost somewhere above the control by then.
void hoverHelp(QWidget& control, QString const& text);

}
