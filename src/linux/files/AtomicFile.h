#pragma once

#include "platform/SystemError.h"

#include <QByteArray>
#include <QString>

#include <expected>
#include <optional>

namespace Quillory {

// Small files of our own, read and replaced whole. Safe on any thread.

// Absent when there is no file at `path`. At most 64 MiB; EFBIG beyond.
std::expected<std::optional<QByteArray>, SystemError> readWholeFile(QString const& path);

// Puts `contents` in the place of the file at `path`, for the user's eyes only, and makes the missing folders above.
// At every moment, a loss of power included, the file is the old one or the new one. A link is followed.
std::expected<void, SystemError> replaceFile(QString const& path, QByteArray const& contents);

// Renames the file at `path` to `<path>.<suffix>-<n>` with the first n from 1 that is free, and gives the new path.
std::expected<QString, SystemError> setFileAside(QString const& path, QString const& suffix);

}
