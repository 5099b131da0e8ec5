#pragma once

#include "support/Test.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <optional>

namespace Quillory {

// A table of a file of JSON, an object of arrays whose names may tell their columns after a colon.
inline QJsonArray tableOf(QString const& path, QString const& name)
{
    QFile file(path);
    auto const all = file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
    auto const keys = all.keys();
    auto const isAsked = [&](QString const& key) { return key.section(u':', 0, 0) == name; };
    auto const key = std::ranges::find_if(keys, isAsked);
    return key == keys.end() ? QJsonArray() : all[*key].toArray();
}

#ifdef QUILLORY_CASES
// Calls `check` with each row of a table of the cases.json beside the tests. A table without rows fails.
template<typename Check>
void forEachCase(QString const& table, Check check)
{
    auto const rows = tableOf(QStringLiteral(QUILLORY_CASES), table);
    ASSERT_FALSE(rows.isEmpty()) << "there is no table " << table.toStdString();
    for (QJsonValue const row : rows) {
        SCOPED_TRACE(QJsonDocument(QJsonArray { row }).toJson(QJsonDocument::Compact).toStdString());
        check(row);
    }
}
#endif

// Bytes as a row has them: %E9 stands for one, %25 for the sign itself.
inline QByteArray bytesIn(QJsonValue const& text)
{
    return QByteArray::fromPercentEncoding(text.toString().toUtf8());
}

// Absent where the row has null.
inline std::optional<QString> textIn(QJsonValue const& text)
{
    return text.isNull() ? std::nullopt : std::optional(text.toString());
}

}
