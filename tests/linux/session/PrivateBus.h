#pragma once

#include "support/Test.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <csignal>

#include <sys/prctl.h>

namespace Quillory {

// A message bus that nobody else sees, without any service, for as long as it lives.
class PrivateBus {
public:
    PrivateBus()
    {
        m_daemon.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
        m_daemon.setStandardErrorFile(QProcess::nullDevice());
        m_daemon.start(u"dbus-daemon"_s,
            { u"--config-file"_s, configuration(), u"--nofork"_s, u"--nopidfile"_s, u"--print-address"_s });
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
    // One that starts no services that this machine happens to have.
    QString configuration() const
    {
        QFile file(m_folder.filePath(u"bus.conf"_s));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(
            u"<busconfig><type>session</type><listen>unix:path=%1/bus</listen><policy context='default'>"
            "<allow send_destination='*' eavesdrop='true'/><allow eavesdrop='true'/><allow own='*'/></policy></busconfig>"_s
                .arg(m_folder.path())
                .toUtf8());
        return file.fileName();
    }

    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
    QStringList m_connections;
};

}
