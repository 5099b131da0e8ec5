#include "settings/WheelGuard.h"

#include <QEvent>
#include <QWidget>

namespace Quillory {

WheelGuard::WheelGuard(QWidget& control)
    : QObject(&control)
{
    control.installEventFilter(this);
}

bool WheelGuard::eventFilter(QObject*, QEvent* event)
{
    if (event->type() != QEvent::Wheel)
        return false;
    event->ignore(); // goes on to the parent
    return true;
}

}
