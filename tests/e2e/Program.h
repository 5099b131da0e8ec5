#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <optional>

namespace Quillory {

// The program as a user has it: a process with settings and a folder of sheets, both of its own.
class Program {
public:
    Program();
    ~Program();

    // The settings that it starts with, beside the toggle shortcut and the folder.
    void setSetting(QString const& key, QJsonValue const& value) { m_settings.insert(key, value); }
    void setHasFolder(bool hasFolder) { m_hasFolder = hasFolder; }

    // As editors save: a new file takes the old one's place.
    void save(QString const& name, QByteArray const& text) const;
    void remove(QString const& name) const;

    void start();
    // Another one of the same settings, as the user does by mistake. Waits for its end and gives its exit code.
    int startAgain(QStringList const& arguments = {}) const;
    void setDisplay(QString const& display) { m_display = display; }

    // Keeps it from running, as a machine under load does, and lets it go on.
    void freeze() const;
    void thaw() const;

    // What it holds of the system: open files, and the memory that it shares with nobody, in KiB.
    int openFiles() const;
    bool holds(QString const& path) const;
    int memory() const;

    qint64 process() const { return m_process.processId(); }
    bool isRunning() const { return m_process.state() == QProcess::Running; }

    // Asks it to end by SIGTERM and waits. True when it ended in order with exit code 0.
    bool terminate();
    // Waits for an end that something else brings about. Its exit code; absent when it crashed or stayed.
    std::optional<int> waitForEnd();

    // What stands on disk now.
    QJsonObject storedSettings() const;

    QString path(QString const& name) const { return m_folder.filePath(name); }
    QString folder() const { return m_folder.filePath(QStringLiteral("sheets")); }
    QProcessEnvironment environment() const;

private:
    QString settingsFile() const { return m_folder.filePath(QStringLiteral("config/quillory/defaults.json")); }

    QTemporaryDir m_folder;
    QJsonObject m_settings;
    QString m_display;
    bool m_hasFolder = true;
    QProcess m_process;
};

}
