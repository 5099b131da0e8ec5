#include "updates/updater/UpdateRecord.h"

namespace Quillory {

using namespace Qt::StringLiterals;

namespace {

QString const automaticKey = u"updateAutomaticChecks"_s;
QString const attemptKey = u"updateLastAttempt"_s;
QString const checkKey = u"updateLastCheck"_s;
QString const feedKey = u"updateFeedTime"_s;
QString const skippedKey = u"updateSkippedVersion"_s;

// The end of the year 9999: what is beyond was not written by this program.
constexpr double latestTime = 253'402'300'799;

}

bool UpdateRecord::automaticChecks() const
{
    return m_defaults.get<bool>(automaticKey).value_or(true);
}

void UpdateRecord::setAutomaticChecks(bool isOn)
{
    m_defaults.setValue(automaticKey, isOn);
}

std::optional<QDateTime> UpdateRecord::lastAttempt() const
{
    return time(attemptKey);
}

void UpdateRecord::setLastAttempt(QDateTime const& time)
{
    m_defaults.setValue(attemptKey, static_cast<double>(time.toSecsSinceEpoch()));
}

std::optional<QDateTime> UpdateRecord::lastCheck() const
{
    return time(checkKey);
}

void UpdateRecord::setLastCheck(QDateTime const& time)
{
    m_defaults.setValue(checkKey, static_cast<double>(time.toSecsSinceEpoch()));
}

std::int64_t UpdateRecord::feedTime() const
{
    return seconds(feedKey).value_or(0);
}

void UpdateRecord::setFeedTime(std::int64_t seconds)
{
    m_defaults.setValue(feedKey, static_cast<double>(seconds));
}

std::optional<ReleaseVersion> UpdateRecord::skipped() const
{
    return ReleaseVersion::fromText(m_defaults.get<QString>(skippedKey).value_or(QString()));
}

void UpdateRecord::setSkipped(ReleaseVersion const& version)
{
    m_defaults.setValue(skippedKey, version.text());
}

std::optional<std::int64_t> UpdateRecord::seconds(QString const& key) const
{
    auto const stored = m_defaults.get<double>(key);
    if (!stored || !(*stored > 0 && *stored <= latestTime))
        return std::nullopt;
    return static_cast<std::int64_t>(*stored);
}

std::optional<QDateTime> UpdateRecord::time(QString const& key) const
{
    auto const since1970 = seconds(key);
    return since1970 ? std::optional(QDateTime::fromSecsSinceEpoch(*since1970)) : std::nullopt;
}

}
