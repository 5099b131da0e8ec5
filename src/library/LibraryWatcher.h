#pragma once

#include "platform/FileEvents.h"
#include "platform/Registration.h"

#include <QString>

#include <chrono>
#include <functional>

namespace Quillory {

// Reports that something in the library folder changed. Without a stream, where the system can give none, it exists
// and reports nothing. Main thread only.
class LibraryWatcher {
public:
    static constexpr std::chrono::milliseconds latency { 150 };

    LibraryWatcher(FileEvents& events, QString const& folder, std::function<void()> changed)
        : m_stream(events.watch(folder, latency, std::move(changed)))
    {
    }

    void stop() { m_stream.end(); }
    bool hasStream() const { return m_stream.isActive(); }

private:
    Registration m_stream;
};

}
