#pragma once

#include <QString>

#include <cstdint>

namespace Quillory {

// Lines that a screen reader speaks without a move of the focus. Main thread only.
class Announcements {
public:
    enum class Priority : std::uint8_t { low = 10, medium = 50, high = 90 };

    virtual ~Announcements() = default;

    virtual void announce(QString const& text, Priority priority) = 0;
};

}
