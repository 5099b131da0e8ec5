#pragma once

#include "support/Test.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSaveFile>
#include <QTemporaryDir>

#include <csignal>
#include <optional>
#include <string>

namespace Quillory {

// The program as a user has it: a process with settings and a folder of sheets, both of its own.
class Program {
public:
    static QString path() { return QStringLiteral(QUILLORY_PROGRAMS "/quillory"); }

    Program()
    {
        QDir().mkpath(folder());
        QDir().mkpath(QFileInfo(settingsFile()).path());
        setSetting(u"KeyboardShortcuts_toggleQuillory"_s, u"{\"carbonKeyCode\":40,\"carbonModifiers\":6144}"_s);
        m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    }
    ~Program()
    {
        if (isRunning())
            terminate();
    }

    // The settings that it starts with, beside the toggle shortcut and the folder.
    void setSetting(QString const& key, QJsonValue const& value) { m_settings.insert(key, value); }
    void setHasFolder(bool hasFolder) { m_hasFolder = hasFolder; }

    // As editors save: a new file takes the old one's place.
    void save(QString const& name, QByteArray const& text) const
    {
        QSaveFile file(folder() + u'/' + name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        ASSERT_TRUE(file.commit());
    }
    void remove(QString const& name) const { ASSERT_TRUE(QFile::remove(folder() + u'/' + name)); }

    void start()
    {
        if (m_hasFolder) {
            auto const bookmark = QJsonDocument(QJsonObject { { u"path"_s, folder() } }).toJson();
            setSetting(u"libraryBookmark"_s, QJsonObject { { u"data"_s, QString::fromLatin1(bookmark.toBase64()) } });
        }
        store(m_settings);
        m_process.setProcessEnvironment(environment());
        m_process.start(path(), QStringList());
        ASSERT_TRUE(m_process.waitForStarted()) << m_process.errorString().toStdString();
    }
    void setDisplay(QString const& display) { m_display = display; }

    // Another one of the same settings, or another program beside it. Ends it once it has said how it is called, and
    // gives its exit code; -1 when it crashed or stayed.
    int startAgain(QStringList const& arguments = {}, QString const& program = path())
    {
        QProcess second;
        second.setProcessChannelMode(QProcess::MergedChannels);
        second.setProcessEnvironment(environment());
        second.start(program, arguments);
        m_said.clear();
        while (!m_said.contains("peek") && second.waitForReadyRead())
            m_said += second.readAll().toStdString();
        if (m_said.contains("peek"))
            second.terminate();
        bool const hasEnded = second.state() == QProcess::NotRunning || second.waitForFinished();
        return hasEnded && second.exitStatus() == QProcess::NormalExit ? second.exitCode() : -1;
    }
    std::string const& said() const { return m_said; } // by the last one

    // Keeps it from running, as a machine under load does, and lets it go on.
    void freeze() const { ::kill(static_cast<pid_t>(process()), SIGSTOP); }
    void thaw() const { ::kill(static_cast<pid_t>(process()), SIGCONT); }

    // What it holds of the system: open files, by what they are, and the memory that it shares with nobody, in KiB.
    QStringList openFiles() const
    {
        QDir const files(u"/proc/%1/fd"_s.arg(process()));
        QStringList opened;
        for (auto const& file : files.entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot))
            opened.append(file.symLinkTarget());
        return opened;
    }
    int memory() const
    {
        QFile file(u"/proc/%1/smaps_rollup"_s.arg(process()));
        auto const all = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        return all.mid(all.indexOf("Pss_Anon:")).simplified().split(' ').value(1).toInt();
    }

    qint64 process() const { return m_process.processId(); }
    bool isRunning() const { return m_process.state() == QProcess::Running; }

    // Asks it to end by SIGTERM and waits. True when it ended in order with exit code 0.
    bool terminate()
    {
        m_process.terminate();
        auto const exitCode = waitForEnd();
        m_process.kill();
        m_process.waitForFinished();
        return exitCode == 0;
    }
    // Waits for an end that something else brings about. Its exit code; absent when it crashed or stayed.
    std::optional<int> waitForEnd()
    {
        if (!m_process.waitForFinished() || m_process.exitStatus() != QProcess::NormalExit)
            return std::nullopt;
        return m_process.exitCode();
    }

    // What stands on disk now.
    QJsonObject storedSettings() const
    {
        QFile file(settingsFile());
        return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
    }
    void store(QJsonObject const& settings) const
    {
        QFile file(settingsFile());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QJsonDocument(settings).toJson());
    }

    QString path(QString const& name) const { return m_folder.filePath(name); }
    QString folder() const { return path(u"sheets"_s); }

private:
    QString settingsFile() const { return path(u"config/quillory/defaults.json"_s); }
    QProcessEnvironment environment() const
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_CONFIG_HOME"_s, path(u"config"_s));
        if (!m_display.isEmpty())
            environment.insert(u"DISPLAY"_s, m_display);
        return environment;
    }

    QTemporaryDir m_folder;
    QJsonObject m_settings;
    QString m_display;
    bool m_hasFolder = true;
    std::string m_said;
    QProcess m_process;
};

}
