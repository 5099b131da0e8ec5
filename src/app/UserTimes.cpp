#include "UserTimes.h"

#include <QCoreApplication>
#include <QInputEvent>

namespace Quillory {

UserTimes::UserTimes(X11Clock& clock)
    : m_clock(clock)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool UserTimes::eventFilter(QObject* watched, QEvent* event)
{
    bool const isPress = event->type() == QEvent::KeyPress || event->type() == QEvent::MouseButtonPress;
    if (isPress && watched->isWindowType())
        m_clock.note(static_cast<X11Clock::Time>(static_cast<QInputEvent*>(event)->timestamp()));
    return false;
}

}
