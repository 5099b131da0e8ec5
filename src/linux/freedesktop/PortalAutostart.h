#pragma once

#include "linux/freedesktop/AutostartEntry.h"
#include "platform/Autostart.h"

#include <QDBusConnection>
#include <QObject>

namespace Quillory {

// Asks the desktop's portal, which is all that a program in a sandbox can do. The portal tells nobody how it stands, so
// that is read from the entry that it makes. A folder that the first entry has made is seen from the next start on: until
// then what was granted counts.
class PortalAutostart final : public Autostart {
public:
    explicit PortalAutostart(
        QDBusConnection sessionBus, AutostartEntry::Folders const& folders = AutostartEntry::Folders::ofHost());

    State state() const override;
    void ask(State wanted, Answered answered) override;

private:
    QDBusConnection m_bus;
    QString m_folder;
    AutostartEntry m_entry;
    State m_granted = State::off;
    QObject m_requests; // their parent: none outlives this
};

}
