#pragma once

#include "platform/Executor.h"
#include "platform/FileEvents.h"

#include <QStringList>

#include <memory>
#include <utility>
#include <vector>

namespace Quillory {

// File events that the test makes. They are delivered on `executor`, after the latency that was asked for.
class FakeFileEvents final : public FileEvents {
public:
    explicit FakeFileEvents(Executor& executor)
        : m_executor(executor)
    {
    }

    // Something changed in the folder, or with the folder.
    void fire(QString const& folder)
    {
        for (auto const& watch : m_watches) {
            if (watch->folder != folder || watch->isDead || watch->delivery.isActive())
                continue;
            watch->delivery = m_executor.after(watch->latency, [owner = std::weak_ptr(watch)] {
                auto const living = owner.lock();
                living->delivery.end();
                living->changed();
            });
        }
    }

    // The drive goes away: the folder's watches hear nothing until they are looked at again.
    void endUnnoticed(QString const& folder)
    {
        for (auto const& watch : m_watches)
            watch->isDead = watch->isDead || watch->folder == folder;
    }

    void lookAgain() override
    {
        for (auto const& watch : m_watches) {
            if (std::exchange(watch->isDead, false))
                fire(watch->folder);
        }
    }

    // Without it every watch is inactive.
    void setAvailable(bool isAvailable) { m_isAvailable = isAvailable; }

    QStringList watchedFolders() const
    {
        QStringList folders;
        for (auto const& watch : m_watches)
            folders << watch->folder;
        return folders;
    }

    Registration watch(QString const& folder, std::chrono::nanoseconds latency, std::function<void()> changed) override
    {
        if (!m_isAvailable)
            return {};
        auto watch = std::make_shared<Watch>(folder, latency, std::move(changed));
        m_watches.push_back(watch);
        return Registration([this, watch] {
            watch->delivery.end();
            std::erase(m_watches, watch);
        });
    }

private:
    struct Watch {
        QString folder;
        std::chrono::nanoseconds latency;
        std::function<void()> changed;
        Registration delivery;
        bool isDead = false;
    };

    Executor& m_executor;
    bool m_isAvailable = true;
    std::vector<std::shared_ptr<Watch>> m_watches;
};

}
