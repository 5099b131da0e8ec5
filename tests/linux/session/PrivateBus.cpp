#include "PrivateBus.h"

#include <QDBusError>

#include <stdexcept>

#include <csignal>
#include <sys/prctl.h>

namespace Quillory {

PrivateBus::PrivateBus()
{
    m_daemon.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_daemon.setStandardErrorFile(QProcess::nullDevice());
    m_daemon.start(QStringLiteral("dbus-daemon"),
        { QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
            QStringLiteral("--print-address"), QStringLiteral("--address=unix:path=%1/bus").arg(m_folder.path()) });
    while (!m_daemon.canReadLine()) {
        if (!m_daemon.waitForReadyRead())
            throw std::runtime_error("dbus-daemon does not start");
    }
    m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
}

PrivateBus::~PrivateBus()
{
    for (auto const& name : m_connections)
        QDBusConnection::disconnectFromBus(name);
    m_daemon.kill();
    m_daemon.waitForFinished();
}

QDBusConnection PrivateBus::connect()
{
    static int count = 0;
    m_connections.append(QStringLiteral("private-%1").arg(++count));
    auto connection = QDBusConnection::connectToBus(m_address, m_connections.back());
    if (!connection.isConnected())
        throw std::runtime_error(connection.lastError().message().toStdString());
    return connection;
}

}
