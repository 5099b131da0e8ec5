#include "presentation/hover_help/HoverHelp.h"

#include "presentation/hover_help/HoverHelpTrackingView.h"

#include <QWidget>

namespace Quillory {

void hoverHelp(QWidget& control, QString const& text)
{
    if (text != control.accessibleDescription())
        control.setAccessibleDescription(text);
    HoverHelpTrackingView::of(control).setText(text);
}

}
