#include "platform/NotificationCenter.h"

#include <utility>

namespace Quillory {

Registration NotificationCenter::observe(QString const& name, Handler handler)
{
    auto observer = std::make_shared<Observer>(name, std::move(handler));
    m_observers.push_back(observer);
    return Registration([this, observer] {
        observer->handler = nullptr;
        std::erase(m_observers, observer);
    });
}

void NotificationCenter::post(Notification const& notification) const
{
    auto const observers = m_observers;
    for (auto const& observer : observers) {
        // A handler may end its own observation, and with it what it holds.
        if (auto const handler = observer->handler; handler && observer->name == notification.name)
            handler(notification);
    }
}

}
