#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QTemporaryDir>

namespace Quillory {

// A message bus that nobody else sees, for as long as it lives. Throws when none can be had.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(PrivateBus const&) = delete;
    PrivateBus& operator=(PrivateBus const&) = delete;

    // A further connection, as of a program of its own.
    QDBusConnection connect();

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
    QStringList m_connections;
};

}
