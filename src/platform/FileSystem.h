#pragma once

#include "platform/InstallFolder.h"
#include "platform/OpenFile.h"
#include "platform/SystemError.h"

#include <QByteArray>
#include <QString>

#include <expected>
#include <memory>
#include <optional>
#include <vector>

namespace Quillory {

// One folder, held open: what is read through it stays in that folder even when paths change meanwhile.
// Names are the bytes that the file system has. Usable from one thread at a time, whichever; `read` from many at once.
class OpenFolder {
public:
    struct EntryStatus {
        bool isRegularFile = false;
        bool isSymbolicLink = false;
        std::optional<qint64> size; // bytes
    };

    virtual ~OpenFolder() = default;

    // The names of the direct children, hidden ones (a leading dot) left out, in no order.
    virtual std::expected<std::vector<QByteArray>, SystemError> names() const = 0;

    // Of the entry itself: a symbolic link is not followed.
    virtual std::expected<EntryStatus, SystemError> status(QByteArray const& name) const = 0;

    // The first `limit` bytes of a regular file. Absent for anything that is no regular file once it is open.
    // Refuses a symbolic link, and never blocks on a fifo or a device.
    virtual std::expected<std::optional<QByteArray>, SystemError> read(QByteArray const& name, qint64 limit) const = 0;

    // The folder's present place: an absolute path without symbolic links.
    virtual std::expected<QByteArray, SystemError> realPath() const = 0;

    // The place that a relative path leads to from here when "..", "." and every symbolic link are followed, which may
    // be outside: an absolute path. Fails when nothing is there. Opens nothing.
    virtual std::expected<QByteArray, SystemError> realPath(QByteArray const& path) const = 0;

    // Opens what lies below the folder at a path of plain names. Fails where any of them is a symbolic link, also one
    // that has just been put there. Never blocks; the status tells whether it is a regular file.
    virtual std::expected<std::unique_ptr<OpenFile>, SystemError> open(QByteArray const& path) const = 0;
};

// The files that sheets come from. Safe on any thread.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    virtual std::expected<std::unique_ptr<OpenFolder>, SystemError> openFolder(QString const& path) const = 0;

    // The names of all direct children of the folder at `path`, hidden ones included, in no order.
    virtual std::expected<std::vector<QByteArray>, SystemError> everyName(QString const& path) const = 0;

    // The folder at `path` itself: fails for a symbolic link to one.
    virtual std::expected<std::unique_ptr<InstallFolder>, SystemError> openForInstalling(QString const& path) const = 0;
};

}
