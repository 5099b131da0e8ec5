#pragma once

#include "platform/Compositing.h"
#include "platform/Observers.h"

namespace Quillory {

// A compositor that the test starts and ends.
class FakeCompositing final : public Compositing {
public:
    void setRunning(bool isRunning, bool leavesShadows = false)
    {
        m_isRunning = isRunning;
        m_leavesShadows = leavesShadows;
        m_observers.tell();
    }

    bool isRunning() const override { return m_isRunning; }
    bool leavesShadowsToWindows() const override { return m_leavesShadows; }
    Registration observeChanges(std::function<void()> changed) override { return m_observers.add(std::move(changed)); }

private:
    bool m_isRunning = true;
    bool m_leavesShadows = false;
    Observers<void()> m_observers;
};

}
