#pragma once

#include "JsonWriter.h"

#include "library/Sheet.h"

#include <QStringList>

#include <expected>

namespace Quillory {

// The queries of a file, a JSON array of texts; or a sentence that names the file and says what is wrong with it.
std::expected<QStringList, QString> readQueries(QString const& path);

// Writes the member "searches": for each query the ids of the sheets that the library search finds, in order.
void writeSearches(JsonWriter& json, QList<Sheet> const& sheets, QStringList const& queries);

}
