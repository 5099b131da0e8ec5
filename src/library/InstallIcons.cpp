#include "library/InstallIcons.h"

#include "library/InstallFile.h"
#include "library/LibraryReference.h"
#include "text/Graphemes.h"
#include "text/TextOrder.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <cerrno>

namespace Quillory {

namespace {

constexpr qint64 iconSizeLimit = 262'144; // bytes
constexpr qsizetype shownReferenceLength = 100;

QString iconsFolder()
{
    return QStringLiteral("icons");
}

// Ascending, each once.
QStringList iconReferences(ShortcutSheet const& sheet)
{
    auto references = sheet.icons();
    std::ranges::sort(references, [](auto const& a, auto const& b) { return compareText(a, b) < 0; });
    auto const repeated = std::ranges::unique(
        references, [](auto const& a, auto const& b) { return canonicallyEqual(a, b); });
    references.erase(repeated.begin(), repeated.end());
    return references;
}

// The failure that ends the installation of icons, if the folder can't be had.
std::optional<InstallResult> makeIconsFolder(FileSystem const& files, QString const& library)
{
    auto const cannotMake = [](SystemError error) {
        return InstallResult::failed(
            QCoreApplication::translate("Library", "Could not install icons: %1").arg(error.localizedDescription()));
    };
    auto const name = iconsFolder().toUtf8();
    auto const folder = files.openForInstalling(library);
    if (!folder)
        return cannotMake(folder.error());
    if (auto const made = (*folder)->makeFolder(name); !made && made.error().code() != EEXIST)
        return cannotMake(made.error());
    if (!(*folder)->isFolder(name).value_or(false))
        return InstallResult::failed(QCoreApplication::translate(
            "Library", "Cannot install icons: icons must be a local directory, not a symlink."));
    return std::nullopt;
}

InstallResult installIcon(
    FileSystem const& files, QString const& reference, OpenFolder const* source, QString const& directory)
{
    auto const invalid = [&] {
        return InstallResult::failed(QCoreApplication::translate("Library", "Missing or invalid bundled icon: %1")
                .arg(firstGraphemes(reference, shownReferenceLength)));
    };
    auto const parts = reference.split(u'/');
    if (!source || parts.size() != 2 || parts.first() != iconsFolder())
        return invalid();
    auto const path = resolveLibraryReference(reference, *source);
    auto const bytes = path ? readLibraryFile(*path, *source, iconSizeLimit) : std::nullopt;
    if (!bytes)
        return invalid();
    return installFile(files, parts.last(), *bytes, directory);
}

}

QList<InstallResult> installIcons(
    FileSystem const& files, ShortcutSheet const& sheet, QString const& source, QString const& library)
{
    auto const references = iconReferences(sheet);
    if (references.isEmpty())
        return {};
    if (auto failure = makeIconsFolder(files, library))
        return { *std::move(failure) };

    auto const sourceFolder = files.openFolder(source);
    auto const directory = library + u'/' + iconsFolder();
    QList<InstallResult> results;
    for (auto const& reference : references)
        results.append(installIcon(files, reference, sourceFolder ? sourceFolder->get() : nullptr, directory));
    return results;
}

}
