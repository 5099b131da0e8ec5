#include "library/InstallFile.h"

#include "text/FileNames.h"
#include "text/TextOrder.h"

#include <QCoreApplication>
#include <QUuid>

#include <algorithm>
#include <cerrno>

namespace Quillory {

namespace {

bool isFileName(QString const& name)
{
    return !name.isEmpty() && !name.contains(u'/') && name != QLatin1StringView(".") && name != QLatin1StringView("..");
}

// Names that one file system or another takes for the same.
QString foldedName(QString const& name)
{
    return canonicalForm(name).toLower();
}

InstallResult failure(QString const& name, SystemError error)
{
    return InstallResult::failed(QStringLiteral("%1: %2").arg(name, error.localizedDescription()));
}

std::expected<void, SystemError> writeFile(InstallFolder::NewFile& file, QByteArray const& bytes)
{
    if (auto const written = file.write(bytes); !written)
        return written;
    return file.close();
}

InstallResult resultOf(QString const& name, std::expected<void, SystemError> const& published)
{
    if (published)
        return InstallResult::created(name);
    if (published.error().code() == EEXIST)
        return InstallResult::skipped(name); // somebody was faster
    return InstallResult::failed(QCoreApplication::translate("Library", "Could not install %1: %2")
            .arg(name, published.error().localizedDescription()));
}

}

InstallResult installFile(
    FileSystem const& files, QString const& name, QByteArray const& bytes, QString const& directory)
{
    if (!isFileName(name))
        return InstallResult::failed(QCoreApplication::translate("Library", "Invalid starter filename"));

    auto const entries = files.everyName(directory);
    if (!entries)
        return failure(name, entries.error());
    auto const isSameName = [folded = foldedName(name)](QByteArray const& entry) {
        return foldedName(FileName::fromBytes(entry).text) == folded;
    };
    if (std::ranges::any_of(*entries, isSameName))
        return InstallResult::skipped(name);

    auto const folder = files.openForInstalling(directory);
    if (!folder)
        return InstallResult::failed(QCoreApplication::translate("Library", "Could not open the selected folder"));

    auto const temporary = ".quillory-" + QUuid::createUuid().toByteArray(QUuid::WithoutBraces) + ".tmp";
    auto file = (*folder)->createFile(temporary);
    if (!file)
        return InstallResult::failed(QCoreApplication::translate("Library", "Could not create %1: %2")
                .arg(name, file.error().localizedDescription()));
    auto const written = writeFile(**file, bytes);
    file->reset();
    if (!written) {
        (void)(*folder)->remove(temporary);
        return failure(name, written.error());
    }

    auto const published = (*folder)->publish(temporary, name.toUtf8());
    (void)(*folder)->remove(temporary);
    return resultOf(name, published);
}

}
