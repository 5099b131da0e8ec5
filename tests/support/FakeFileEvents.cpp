#include "support/FakeFileEvents.h"

#include <utility>

namespace Quillory {

FakeFileEvents::FakeFileEvents(Executor& executor)
    : m_executor(executor)
{
}

void FakeFileEvents::fire(QString const& folder)
{
    for (auto const& watch : m_watches) {
        if (watch->folder != folder || std::exchange(watch->isDue, true))
            continue;
        watch->delivery = m_executor.after(watch->latency, [owner = std::weak_ptr(watch)] {
            auto const living = owner.lock();
            living->isDue = false;
            living->changed();
        });
    }
}

QStringList FakeFileEvents::watchedFolders() const
{
    QStringList folders;
    for (auto const& watch : m_watches)
        folders << watch->folder;
    return folders;
}

Registration FakeFileEvents::watch(
    QString const& folder, std::chrono::nanoseconds latency, std::function<void()> changed)
{
    if (!m_isAvailable)
        return {};
    m_latency = latency;
    auto watch = std::make_shared<Watch>(folder, latency, std::move(changed));
    m_watches.push_back(watch);
    return Registration([this, watch] {
        watch->delivery.end();
        std::erase(m_watches, watch);
    });
}

}
