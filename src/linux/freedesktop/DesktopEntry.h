#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace Quillory {

// An installed application as its desktop entry describes it.
struct DesktopEntry {
    QString path; // of the entry itself
    QString name; // in the user's language
    QString icon;
    QString exec; // as written, escapes of the file resolved
    QString folder; // to start it in; empty for none
    bool wantsTerminal = false;

    // Absent for what is no entry of an application that can be started.
    static std::optional<DesktopEntry> parse(
        QByteArray const& contents, QString const& path, QStringList const& languages);

    // The keys of the first group with their values; empty where that is not the group of an entry.
    static QHash<QString, QString> mainGroup(QByteArray const& contents);

    // The program and its arguments for opening `file`. A line without a place for it gets the file at its end. Absent when
    // the line is malformed.
    std::optional<QStringList> commandFor(QString const& file) const;
};

}
