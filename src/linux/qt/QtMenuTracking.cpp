#include "linux/qt/QtMenuTracking.h"

#include <QCoreApplication>
#include <QEvent>

namespace Quillory {

QtMenuTracking::QtMenuTracking(NotificationCenter& notifications)
    : m_notifications(notifications)
{
    QCoreApplication::instance()->installEventFilter(this);
}

QtMenuTracking::~QtMenuTracking()
{
    QCoreApplication::instance()->removeEventFilter(this);
}

bool QtMenuTracking::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Show && watched->inherits("QMenu")) {
        if (m_open.insert(watched).second && m_open.size() == 1)
            m_notifications.post({ NotificationCenter::menuDidBeginTracking(), {} });
    } else if (event->type() == QEvent::Hide && m_open.erase(watched) == 1 && m_open.empty()) {
        // A menu that is destroyed while it is open hides as well, when it is no menu any more.
        m_notifications.post({ NotificationCenter::menuDidEndTracking(), {} });
    }
    return false;
}

}
