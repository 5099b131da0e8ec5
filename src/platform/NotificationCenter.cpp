#include "platform/NotificationCenter.h"

#include <utility>

namespace Quillory {

Registration NotificationCenter::observe(QString const& name, Handler handler)
{
    return m_observers[name].add(std::move(handler));
}

void NotificationCenter::post(Notification const& notification) const
{
    if (auto const observers = m_observers.find(notification.name); observers != m_observers.end())
        observers->second.tell(notification);
}

}
