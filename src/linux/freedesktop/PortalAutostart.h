#pragma once

#include "linux/freedesktop/AutostartEntry.h"
#include "platform/Autostart.h"

#include <QDBusConnection>
#include <QObject>

namespace Quillory {

// Asks the desktop's portal, which is all that a program in a sandbox can do. The portal tells nobody how it stands, so
// that is read from the entry that it makes.
class PortalAutostart final : public Autostart {
public:
    explicit PortalAutostart(QDBusConnection sessionBus);

    State state() const override { return m_entry.state(); }
    void ask(State wanted, Answered answered) override;

private:
    QDBusConnection m_bus;
    AutostartEntry m_entry { AutostartEntry::Folders::ofHost(), {} };
    QObject m_requests; // their parent: none outlives this
};

}
