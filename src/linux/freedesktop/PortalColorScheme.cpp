#include "linux/freedesktop/PortalColorScheme.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <utility>

namespace Quillory {

namespace {

QString const service = QStringLiteral("org.freedesktop.portal.Desktop");
QString const path = QStringLiteral("/org/freedesktop/portal/desktop");
QString const settings = QStringLiteral("org.freedesktop.portal.Settings");
QString const appearance = QStringLiteral("org.freedesktop.appearance");
QString const colorScheme = QStringLiteral("color-scheme");

}

PortalColorScheme::PortalColorScheme(QDBusConnection sessionBus, std::function<void(PreferredAppearance)> changed)
    : m_bus(std::move(sessionBus))
    , m_portals(service, m_bus, QDBusServiceWatcher::WatchForRegistration)
    , m_changed(std::move(changed))
{
    connect(&m_portals, &QDBusServiceWatcher::serviceRegistered, this, &PortalColorScheme::read);
    m_bus.connect(service, path, settings, QStringLiteral("SettingChanged"), this, SLOT(settingChanged(QDBusMessage)));
    read();
}

void PortalColorScheme::read()
{
    auto question = QDBusMessage::createMethodCall(service, path, settings, QStringLiteral("Read"));
    question.setAutoStartService(false);
    question << appearance << colorScheme;
    auto* const answer = new QDBusPendingCallWatcher(m_bus.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        if (QDBusPendingReply<QDBusVariant> const reply = *answer; !reply.isError())
            take(reply.value().variant());
    });
}

void PortalColorScheme::settingChanged(QDBusMessage const& signal)
{
    auto const arguments = signal.arguments();
    if (arguments.value(0) == appearance && arguments.value(1) == colorScheme)
        take(arguments.value(2));
}

// Older portals wrap what is read into one variant more.
void PortalColorScheme::take(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    using enum PreferredAppearance;
    switch (value.toUInt()) {
    case 1:
        return m_changed(dark);
    case 2:
        return m_changed(light);
    default:
        return m_changed(none);
    }
}

}
