#include "library/Preferences.h"

#include "text/TextOrder.h"

#include <QDir>

#include <algorithm>
#include <iterator>

namespace Quillory {

namespace {

QString const lastSheetKey = QStringLiteral("lastSheet");
QString const learningModeKey = QStringLiteral("learningModeEnabled");
QString const modifierGestureKey = QStringLiteral("modifierGesture");
QString const textSizeKey = QStringLiteral("textSize");
QString const keyNamesKey = QStringLiteral("keyNames");
QString const words = QStringLiteral("words"); // anything else stands for symbols
QString const pinnedSheetsKey = QStringLiteral("pinnedSheets"); // an object: the path of a folder to its list of ids

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
    auto folders = defaults.get<QJsonObject>(pinnedSheetsKey).value_or(QJsonObject());
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

Preferences::Preferences(UserDefaults& defaults)
    : m_defaults(defaults)
{
}

std::optional<QString> Preferences::lastSheet() const
{
    return m_defaults.get<QString>(lastSheetKey);
}

void Preferences::setLastSheet(std::optional<QString> const& id)
{
    if (id)
        m_defaults.setValue(lastSheetKey, *id);
    else
        m_defaults.removeValue(lastSheetKey);
}

bool Preferences::learningModeEnabled() const
{
    return m_defaults.get<bool>(learningModeKey).value_or(false);
}

void Preferences::setLearningModeEnabled(bool isEnabled)
{
    m_defaults.setValue(learningModeKey, isEnabled);
}

ModifierGesture Preferences::modifierGesture() const
{
    auto const stored = m_defaults.get<QString>(modifierGestureKey).value_or(QString());
    return modifierGestureFromRawValue(stored).value_or(ModifierGesture::off);
}

void Preferences::setModifierGesture(ModifierGesture gesture)
{
    m_defaults.setValue(modifierGestureKey, rawValue(gesture));
}

double Preferences::textSize() const
{
    auto const stored = m_defaults.get<double>(textSizeKey).value_or(0);
    return stored == 0 ? defaultTextSize : std::clamp(stored, minimumTextSize, maximumTextSize);
}

void Preferences::setTextSize(double size)
{
    m_defaults.setValue(textSizeKey, size);
}

KeyNames Preferences::keyNames() const
{
    return m_defaults.get<QString>(keyNamesKey) == words ? KeyNames::words : KeyNames::symbols;
}

void Preferences::setKeyNames(KeyNames names)
{
    m_defaults.setValue(keyNamesKey, names == KeyNames::words ? words : QStringLiteral("symbols"));
}

QStringList Preferences::pins(QString const& folder) const
{
    auto const folders = storedFolders(m_defaults);
    return listOfTexts(folders.value(keyOf(folders, folder))).value_or(QStringList());
}

void Preferences::setPins(QString const& folder, QStringList const& pins)
{
    auto folders = storedFolders(m_defaults);
    folders.insert(keyOf(folders, folder), QJsonArray::fromStringList(pins));
    m_defaults.setValue(pinnedSheetsKey, folders);
}

}
