#include "library/LibraryInstallation.h"

#include "library/InstallFile.h"
#include "library/InstallIcons.h"
#include "library/LibraryError.h"
#include "library/LibraryLoad.h"
#include "library/StarterSheets.h"

#include <QCoreApplication>

namespace Quillory {

namespace {

std::optional<QByteArray> starterContents(FileSystem const& files, QString const& starters, QString const& target)
{
    auto const folder = files.openFolder(starters);
    if (!folder)
        return std::nullopt;
    return (*folder)->read(target.toUtf8(), sheetSizeLimit).value_or(std::nullopt);
}

}

QString LibraryInstallation::Outcome::message() const
{
    QStringList lines;
    for (auto const& result : results)
        lines.append(result.line());
    if (error)
        lines.append(*error);
    return lines.join(u'\n');
}

LibraryInstallation::Outcome LibraryInstallation::run(
    FileSystem const& files, Load const& load, std::stop_token const& cancelled) const
{
    Outcome outcome;
    for (auto const& target : targets) {
        if (cancelled.stop_requested())
            return outcome;
        outcome.results.append(installStarter(files, target));
    }
    if (cancelled.stop_requested())
        return outcome;
    if (auto loaded = load())
        outcome.library = *std::move(loaded);
    else
        outcome.error = descriptionOfUnreadableFolder(loaded.error());
    return outcome;
}

QList<InstallResult> LibraryInstallation::installStarter(FileSystem const& files, QString const& target) const
{
    auto const bytes = starterContents(files, starters, target);
    if (!bytes)
        return { InstallResult::failed(
            QCoreApplication::translate("Library", "Missing bundled starter: %1").arg(target)) };
    QList<InstallResult> results { installFile(files, target, *bytes, folder) };
    if (results.first().kind != InstallResult::Kind::created || !StarterSheets::isStructured(target))
        return results;
    if (auto const sheet = ShortcutSheet::decode(*bytes))
        results += installIcons(files, *sheet, starters, folder);
    return results;
}

}
