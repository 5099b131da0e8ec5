#include "library/PinnedSheets.h"

#include "text/TextOrder.h"

#include <QDir>

#include <algorithm>
#include <optional>

namespace Quillory {

namespace {

QString pinnedSheetsKey()
{
    return QStringLiteral("pinnedSheets");
}

std::optional<QStringList> listOfTexts(QJsonValue const& value)
{
    if (!value.isArray())
        return std::nullopt;
    QStringList texts;
    for (auto const& each : value.toArray()) {
        if (!each.isString())
            return std::nullopt;
        texts.append(each.toString());
    }
    return texts;
}

QJsonObject storedFolders(UserDefaults const& defaults)
{
    auto folders = defaults.get<QJsonObject>(pinnedSheetsKey()).value_or(QJsonObject());
    for (auto entry = folders.begin(); entry != folders.end();)
        entry = listOfTexts(*entry) ? std::next(entry) : folders.erase(entry);
    return folders;
}

// The key under which the folder stands: its own path, else one that is only canonically equal.
QString keyOf(QJsonObject const& folders, QString const& folder)
{
    auto path = QDir::cleanPath(folder);
    if (folders.contains(path))
        return path;
    auto const keys = folders.keys();
    auto const same = std::ranges::find_if(keys, [&](QString const& key) { return canonicallyEqual(key, path); });
    return same == keys.end() ? path : *same;
}

}

QStringList PinnedSheets::stored(UserDefaults const& defaults, QString const& folder)
{
    auto const folders = storedFolders(defaults);
    return listOfTexts(folders.value(keyOf(folders, folder))).value_or(QStringList());
}

void PinnedSheets::store(UserDefaults& defaults, QString const& folder, QStringList const& pins)
{
    auto folders = storedFolders(defaults);
    folders.insert(keyOf(folders, folder), QJsonArray::fromStringList(pins));
    defaults.setValue(pinnedSheetsKey(), folders);
}

}
