#pragma once

#include "platform/Executor.h"
#include "platform/FileEvents.h"

#include <QStringList>

#include <memory>
#include <vector>

namespace Quillory {

// File events that the test makes. They are delivered on `executor`, after the latency that was asked for.
class FakeFileEvents final : public FileEvents {
public:
    explicit FakeFileEvents(Executor& executor);

    // Something changed in the folder, or with the folder.
    void fire(QString const& folder);

    // Without it every watch is inactive.
    void setAvailable(bool isAvailable) { m_isAvailable = isAvailable; }

    QStringList watchedFolders() const;
    // Of the latest watch.
    std::chrono::nanoseconds latency() const { return m_latency; }

    Registration watch(QString const& folder, std::chrono::nanoseconds latency, std::function<void()> changed) override;

private:
    struct Watch {
        QString folder;
        std::chrono::nanoseconds latency;
        std::function<void()> changed;
        bool isDue = false;
        Registration delivery;
    };

    Executor& m_executor;
    bool m_isAvailable = true;
    std::chrono::nanoseconds m_latency {};
    std::vector<std::shared_ptr<Watch>> m_watches;
};

}
