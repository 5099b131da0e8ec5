#pragma once

#include "platform/Executor.h"
#include "platform/FileEvents.h"
#include "platform/Lifetime.h"

#include <memory>

namespace Quillory {

// One inotify instance for all watches. The path is followed and not the folder that stood there first: when it is
// renamed or removed and another takes its place, the events go on. Network drives tell nothing of other machines.
class InotifyFileEvents final : public FileEvents {
public:
    // Waits on `executor`, which must outlive it.
    explicit InotifyFileEvents(Executor& executor);
    ~InotifyFileEvents() override;

    Registration watch(QString const& folder, std::chrono::nanoseconds latency, std::function<void()> changed) override;
    void lookAgain() override;

private:
    class Instance;
    std::unique_ptr<Instance> m_instance;
    Lifetime m_lifetime;
};

}
