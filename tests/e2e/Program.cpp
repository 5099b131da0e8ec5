#include "e2e/Program.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>

namespace Quillory {

Program::Program()
{
    QDir().mkpath(folder());
    QDir().mkpath(QFileInfo(settingsFile()).path());
    setSetting(QStringLiteral("KeyboardShortcuts_toggleQuillory"),
        QStringLiteral("{\"carbonKeyCode\":40,\"carbonModifiers\":6144}"));
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
}

Program::~Program()
{
    if (isRunning())
        terminate();
}

void Program::save(QString const& name, QByteArray const& text) const
{
    QSaveFile file(folder() + QLatin1Char('/') + name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
    ASSERT_TRUE(file.commit());
}

void Program::remove(QString const& name) const
{
    ASSERT_TRUE(QFile::remove(folder() + QLatin1Char('/') + name));
}

void Program::start()
{
    if (m_hasFolder) {
        auto const bookmark = QJsonDocument(QJsonObject { { QStringLiteral("path"), folder() } }).toJson();
        setSetting(QStringLiteral("libraryBookmark"),
            QJsonObject { { QStringLiteral("data"), QString::fromLatin1(bookmark.toBase64()) } });
    }
    QFile settings(settingsFile());
    ASSERT_TRUE(settings.open(QIODevice::WriteOnly));
    settings.write(QJsonDocument(m_settings).toJson());
    settings.close();
    m_process.setProcessEnvironment(environment());
    m_process.start(QStringLiteral(QUILLORY_PROGRAMS "/quillory"), QStringList());
    ASSERT_TRUE(m_process.waitForStarted()) << m_process.errorString().toStdString();
}

bool Program::terminate()
{
    m_process.terminate();
    auto const ended = m_process.waitForFinished();
    if (!ended)
        m_process.kill();
    m_process.waitForFinished();
    return ended && m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
}

std::optional<int> Program::waitForEnd()
{
    if (!m_process.waitForFinished() || m_process.exitStatus() != QProcess::NormalExit)
        return std::nullopt;
    return m_process.exitCode();
}

int Program::startAgain(QStringList const& arguments) const
{
    QProcess second;
    second.setProcessChannelMode(QProcess::ForwardedChannels);
    second.setProcessEnvironment(environment());
    second.start(QStringLiteral(QUILLORY_PROGRAMS "/quillory"), arguments);
    return second.waitForFinished() && second.exitStatus() == QProcess::NormalExit ? second.exitCode() : -1;
}

void Program::freeze() const
{
    ::kill(static_cast<pid_t>(process()), SIGSTOP);
}

void Program::thaw() const
{
    ::kill(static_cast<pid_t>(process()), SIGCONT);
}

int Program::openFiles() const
{
    QDir const files(QStringLiteral("/proc/%1/fd").arg(process()));
    return static_cast<int>(files.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size());
}

bool Program::holds(QString const& path) const
{
    QDir const files(QStringLiteral("/proc/%1/fd").arg(process()));
    auto const all = files.entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    return std::ranges::any_of(all, [&](auto const& file) { return file.symLinkTarget() == path; });
}

int Program::memory() const
{
    QFile file(QStringLiteral("/proc/%1/smaps_rollup").arg(process()));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (auto const& line : file.readAll().split('\n')) {
        if (line.startsWith("Pss_Anon:"))
            return line.simplified().split(' ').at(1).toInt();
    }
    return 0;
}

QJsonObject Program::storedSettings() const
{
    QFile file(settingsFile());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object();
}

QProcessEnvironment Program::environment() const
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_folder.filePath(QStringLiteral("config")));
    if (!m_display.isEmpty())
        environment.insert(QStringLiteral("DISPLAY"), m_display);
    return environment;
}

}
