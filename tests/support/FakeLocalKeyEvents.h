#pragma once

#include "platform/LocalKeyEvents.h"

#include <utility>

namespace Quillory {

// Key events of windows that a test only imagines; one monitor at a time.
class FakeLocalKeyEvents final : public LocalKeyEvents {
public:
    Registration observe(Monitor monitor) override
    {
        m_monitor = std::move(monitor);
        return Registration([this] { m_monitor = nullptr; });
    }

    bool isObserved() const { return static_cast<bool>(m_monitor); }

    Answer send(RawKeyEvent const& event)
    {
        auto const monitor = m_monitor;
        return monitor ? monitor(event) : Answer::passOn;
    }

private:
    Monitor m_monitor;
};

}
