#pragma once

#include "platform/Observers.h"

#include <QString>

#include <any>
#include <functional>
#include <map>

namespace Quillory {

struct Notification {
    QString name;
    std::map<QString, std::any> userInfo;
};

// Tells whoever listens to a name what was posted under it. The poster and the listeners need not know each other.
// Main thread only. Outlives its observations.
class NotificationCenter {
public:
    using Handler = std::function<void(Notification const&)>;

    // A menu that this program draws came up; the last of them went away.
    static QString menuDidBeginTracking() { return QStringLiteral("NSMenuDidBeginTrackingNotification"); }
    static QString menuDidEndTracking() { return QStringLiteral("NSMenuDidEndTrackingNotification"); }

    // In order of arrival.
    Registration observe(QString const& name, Handler handler);

    // Returns when all have been told who observed at its start and still do.
    void post(Notification const& notification) const;

private:
    std::map<QString, Observers<void(Notification const&)>> m_observers;
};

}
