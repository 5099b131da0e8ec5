#pragma once

#include "platform/SystemError.h"

#include <QByteArray>

#include <expected>

namespace Quillory {

// One entry of a folder, held open: what it tells is of this very file, whatever its path leads to meanwhile.
// Usable from one thread at a time, whichever.
class OpenFile {
public:
    struct Status {
        bool isRegularFile = false;
        qint64 size = 0; // bytes
    };

    virtual ~OpenFile() = default;

    virtual std::expected<Status, SystemError> status() const = 0;

    // The file's present place: an absolute path without symbolic links. Fails when it has been removed.
    virtual std::expected<QByteArray, SystemError> realPath() const = 0;

    // From the start, `limit` bytes at most.
    virtual std::expected<QByteArray, SystemError> read(qint64 limit) const = 0;
};

}
