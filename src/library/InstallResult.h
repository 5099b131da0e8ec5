#pragma once

#include <QString>

namespace Quillory {

// The outcome of installing one file.
struct InstallResult {
    enum class Kind { created, skipped, failed };

    static InstallResult created(QString name) { return { Kind::created, std::move(name) }; }
    static InstallResult skipped(QString name) { return { Kind::skipped, std::move(name) }; }
    static InstallResult failed(QString message) { return { Kind::failed, std::move(message) }; }

    Kind kind;
    QString text; // the file's name; of a failure the whole message

    // For the user.
    QString line() const;

    bool operator==(InstallResult const&) const = default;
};

}
