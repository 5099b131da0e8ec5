#pragma once

#include <QString>

namespace Quillory {

// A failure that the operating system reported, by its `errno`.
class SystemError {
public:
    explicit SystemError(int code)
        : m_code(code)
    {
    }

    // Of the calling thread's `errno`; EIO where it says nothing.
    static SystemError last();

    int code() const { return m_code; }

    // The system's own text for it, in the user's language. Safe on any thread.
    QString localizedDescription() const;

    bool operator==(SystemError const&) const = default;

private:
    int m_code;
};

}
