#pragma once

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

namespace Quillory {

// Makes sense of requests to peek and to end that, which other programs pass on for a key: repeated while the key is
// held, with an end that never comes, or, for a quick tap, with the end first.
class PeekVerbs {
public:
    using Time = std::chrono::nanoseconds;

    // How long after the keys a process that tells of them may come.
    static constexpr std::chrono::milliseconds lateness { 100 };

    // How long keys are held on after what they held has gone.
    static constexpr std::chrono::seconds patience { 2 };

    // Two processes that start within this time of each other may arrive in the other order.
    static constexpr std::chrono::milliseconds disorder { 250 };

    // A held key repeats some 25 times a second.
    static constexpr std::chrono::milliseconds repetition { 100 };

    // Whether a request to peek means one: not when it repeats the last one, nor when its end has been told already.
    bool begins(Time now)
    {
        auto const previous = std::exchange(m_latest, now);
        if (isEndOwed(now) && previous && now - *previous < repetition) {
            m_endOwedUntil = std::max<Time>(m_endOwedUntil, now + repetition);
            return false;
        }
        auto const earlyEnd = std::exchange(m_earlyEnd, std::nullopt);
        bool const hasEnded = earlyEnd && now - *earlyEnd < disorder;
        m_endOwedUntil = hasEnded ? Time::min() : Time::max();
        return !hasEnded;
    }

    void ends(Time now)
    {
        if (!isEndOwed(now))
            m_earlyEnd = now;
        m_endOwedUntil = Time::min();
    }

    // The peek was over before its end was told. That is not waited for forever, since some desktops forget it when
    // another key goes down.
    void isCutOff(Time now)
    {
        if (isEndOwed(now))
            m_endOwedUntil = now + patience;
    }

    // And the keys were seen to be up: it is told soon or never.
    void keysAreUp(Time now)
    {
        if (isEndOwed(now))
            m_endOwedUntil = now + lateness;
    }

private:
    bool isEndOwed(Time now) const { return now < m_endOwedUntil; }

    std::optional<Time> m_latest;
    std::optional<Time> m_earlyEnd;
    Time m_endOwedUntil = Time::min(); // of the latest request that meant a peek
};

}
