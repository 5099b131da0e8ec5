#pragma once

#include "platform/Registration.h"

#include <QString>

#include <chrono>
#include <functional>

namespace Quillory {

// Reports that something in a folder changed. Main thread only.
class FileEvents {
public:
    virtual ~FileEvents() = default;

    // Calls `changed` on the main thread, at most once per `latency`, after anything directly in the folder, or the
    // folder itself, was made, written, renamed or removed. Inactive when the system can give no such events.
    virtual Registration watch(QString const& folder, std::chrono::nanoseconds latency, std::function<void()> changed)
        = 0;

    // Looks at what is at the watched paths now. A watch can end unnoticed, with its drive or with a folder above it: where
    // another folder is found, or none, that is told as a change.
    virtual void lookAgain() = 0;
};

}
