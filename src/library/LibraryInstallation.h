#pragma once

#include "library/InstallResult.h"
#include "library/LoadedLibrary.h"
#include "platform/FileSystem.h"
#include "platform/SystemError.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <expected>
#include <functional>
#include <optional>
#include <stop_token>

namespace Quillory {

// The installation of starter sheets into a library, which reads the library again at its end.
struct LibraryInstallation {
    using Load = std::function<std::expected<LoadedLibrary, SystemError>()>;

    // Empty when the installation was cancelled before it began.
    struct Outcome {
        QList<InstallResult> results; // in the order of the targets, a sheet's icons after it
        std::optional<LoadedLibrary> library;
        std::optional<QString> error; // why the library could not be read afterwards

        // For the user, a line for each result.
        QString message() const;
    };

    QString folder;
    QString starters; // the folder that the sheets come from, their icons below it
    QStringList targets; // names of files, in both folders

    // Made for a worker. A cancelled one keeps what it has installed.
    Outcome run(FileSystem const& files, Load const& load, std::stop_token const& cancelled) const;

private:
    QList<InstallResult> installStarter(FileSystem const& files, QString const& target) const;
};

}
