#pragma once

#include "platform/PreferredAppearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>

#include <functional>

namespace Quillory {

// The appearance that the desktop's settings ask for, through the portal. A desktop without a portal asks for nothing, and
// none is started for it; one that comes later is asked then. Main thread only.
class PortalColorScheme : public QObject {
    Q_OBJECT
public:
    // `changed` is called once the portal has answered, never from in here, and at every change after that.
    PortalColorScheme(QDBusConnection sessionBus, std::function<void(PreferredAppearance)> changed);

private Q_SLOTS:
    void settingChanged(QDBusMessage const& signal);

private:
    void read();
    void take(QVariant value);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_portals;
    std::function<void(PreferredAppearance)> m_changed;
};

}
