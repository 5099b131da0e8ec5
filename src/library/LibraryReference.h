#pragma once

#include "library/Sheet.h"
#include "platform/FileSystem.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace Quillory {

// The file that a sheet's reference names: a path from the library folder, without links and "..". Absent when nothing
// is there, and whenever it is no relative path to something inside the library. Percent escapes are decoded once.
// To be read with `readLibraryFile` alone, since what stands at the path may change after this look.
std::optional<QByteArray> resolveLibraryReference(QString const& reference, OpenFolder const& folder);

// The bytes of a file that really lies in the library, looked at once it is open. Absent for every failure, for an
// empty file and for one of more than `limit` bytes.
std::optional<QByteArray> readLibraryFile(QByteArray const& path, OpenFolder const& folder, qint64 limit);

// The folders below the library folder that the references of sheets name, whether or not anything is there, with
// those on the way: "a" and "a/b" for "a/b/c.png". At most 256, in order, none deeper than 16. Walks all sheets: made
// for a worker.
QStringList referencedFolders(QList<Sheet> const& sheets);

}
