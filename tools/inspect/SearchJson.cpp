#include "SearchJson.h"

#include "library/FoldedSheets.h"
#include "library/LibraryQuery.h"

#include <QFile>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <string>

namespace Quillory {

std::expected<QStringList, QString> readQueries(QString const& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::unexpected(QStringLiteral("can't read %1: %2").arg(path, file.errorString()));
    auto const bytes = file.readAll();
    constexpr bool throwing = false;
    auto const json = nlohmann::json::parse(bytes.cbegin(), bytes.cend(), nullptr, throwing);
    auto const wrong = [&](QString const& what) { return std::unexpected(path + QStringLiteral(" is no ") + what); };
    if (json.is_discarded())
        return wrong(QStringLiteral("JSON"));
    if (!json.is_array() || !std::ranges::all_of(json, [](auto const& query) { return query.is_string(); }))
        return wrong(QStringLiteral("array of queries, each of them a text"));
    QStringList queries;
    for (auto const& query : json)
        queries.append(QString::fromStdString(query.get<std::string>()));
    return queries;
}

void writeSearches(JsonWriter& json, QList<Sheet> const& sheets, QStringList const& queries)
{
    auto const folded = FoldedSheets::of(sheets);
    json.key(u"searches");
    json.array(queries, [&](QString const& typed) {
        auto const query = LibraryQuery::of(typed).bytes;
        json.beginLine();
        json.beginArray();
        if (!query)
            std::ranges::for_each(sheets, [&](Sheet const& sheet) { json.value(sheet.id); });
        else
            std::ranges::for_each(
                folded->holding(*query), [&](qsizetype position) { json.value(sheets.at(position).id); });
        json.endArray();
    });
}

}
