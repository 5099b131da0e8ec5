#pragma once

#include "support/Test.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QProcess>
#include <QTemporaryDir>

#include <csignal>

#include <sys/prctl.h>

namespace Quillory {

// A message bus that nobody else sees, for as long as it lives.
class PrivateBus {
public:
    PrivateBus()
    {
        m_daemon.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
        m_daemon.setStandardErrorFile(QProcess::nullDevice());
        m_daemon.start(u"dbus-daemon"_s,
            { u"--session"_s, u"--nofork"_s, u"--nopidfile"_s, u"--print-address"_s,
                u"--address=unix:path=%1/bus"_s.arg(m_folder.path()) });
        while (!m_daemon.canReadLine() && m_daemon.waitForReadyRead()) { }
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    }
    ~PrivateBus()
    {
        for (auto const& name : m_connections)
            QDBusConnection::disconnectFromBus(name);
        m_daemon.kill();
        m_daemon.waitForFinished();
    }

    QString const& address() const { return m_address; }

    // A further connection, as of a program of its own.
    QDBusConnection connect()
    {
        static int count = 0;
        m_connections.append(u"private-%1"_s.arg(++count));
        auto const connection = QDBusConnection::connectToBus(m_address, m_connections.back());
        EXPECT_TRUE(connection.isConnected()) << connection.lastError().message().toStdString();
        return connection;
    }

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
    QStringList m_connections;
};

}
