#pragma once

#include "platform/NotificationCenter.h"
#include "platform/SessionEvents.h"

#include <utility>

namespace Quillory {

// A session that a test puts to sleep, wakes and locks.
class FakeSessionEvents final : public SessionEvents {
public:
    Registration observeWillSleep(Action action) override { return observe(u"sleep", std::move(action)); }
    Registration observeDidWake(Action action) override { return observe(u"wake", std::move(action)); }
    Registration observeSessionDidResignActive(Action action) override { return observe(u"resign", std::move(action)); }

    void sleep() { tell(u"sleep"); }
    void wake() { tell(u"wake"); }
    void resign() { tell(u"resign"); }

    int observers() const { return m_observers; }

private:
    Registration observe(QStringView event, Action action)
    {
        ++m_observers;
        auto observation = m_center.observe(
            event.toString(), [action = std::move(action)](Notification const&) { action(); });
        return Registration([this, observation = std::move(observation)]() mutable {
            observation.end();
            --m_observers;
        });
    }

    void tell(QStringView event) { m_center.post({ event.toString(), {} }); }

    NotificationCenter m_center;
    int m_observers = 0;
};

}
