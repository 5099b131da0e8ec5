#pragma once

#include <functional>
#include <utility>

namespace Quillory {

// Something that was started and whose end is owed: a hot key, an observation, a task, an open scope.
// Making it starts it; its end, by destruction or `end()`, stops it exactly once. Empty when default-constructed.
class [[nodiscard]] Registration {
public:
    Registration() = default;
    explicit Registration(std::move_only_function<void()> onEnd)
        : m_onEnd(std::move(onEnd))
    {
    }
    Registration(Registration&& other) noexcept
        : m_onEnd(std::exchange(other.m_onEnd, nullptr))
    {
    }
    Registration& operator=(Registration&& other) noexcept
    {
        if (this != &other) {
            end();
            m_onEnd = std::exchange(other.m_onEnd, nullptr);
        }
        return *this;
    }
    Registration(Registration const&) = delete;
    Registration& operator=(Registration const&) = delete;
    ~Registration() { end(); }

    void end()
    {
        if (auto onEnd = std::exchange(m_onEnd, nullptr))
            onEnd();
    }

    bool isActive() const { return static_cast<bool>(m_onEnd); }

private:
    std::move_only_function<void()> m_onEnd;
};

}
