#pragma once

#include "platform/UserDefaults.h"
#include "updates/feed/ReleaseVersion.h"

#include <QDateTime>

#include <cstdint>
#include <optional>

namespace Quillory {

// What the updater remembers across restarts.
class UpdateRecord {
public:
    explicit UpdateRecord(UserDefaults& defaults)
        : m_defaults(defaults)
    {
    }

    bool automaticChecks() const;
    void setAutomaticChecks(bool isOn);

    // When a check was last begun, whatever became of it.
    std::optional<QDateTime> lastAttempt() const;
    void setLastAttempt(QDateTime const& time);

    // When a check last came to its end.
    std::optional<QDateTime> lastCheck() const;
    void setLastCheck(QDateTime const& time);

    // Of the feed that was accepted last, in seconds since 1970.
    std::int64_t feedTime() const;
    void setFeedTime(std::int64_t seconds);

    // This version and those before it are not wanted.
    std::optional<ReleaseVersion> skipped() const;
    void setSkipped(ReleaseVersion const& version);

private:
    std::optional<std::int64_t> seconds(QString const& key) const;
    std::optional<QDateTime> time(QString const& key) const;

    UserDefaults& m_defaults;
};

}
