#pragma once

#include "platform/SystemError.h"

#include <QByteArray>

#include <expected>
#include <memory>

namespace Quillory {

// One folder, held open, in which files are made and never replaced: a path that is swapped meanwhile can't lead a
// write elsewhere. Names that lead anywhere but to a direct child fail with EINVAL.
// Usable from one thread at a time, whichever.
class InstallFolder {
public:
    // A file that was just made, open for writing. Its end closes it, whatever comes of that.
    class NewFile {
    public:
        virtual ~NewFile() = default;

        // All of `bytes`, or a failure after some of them.
        virtual std::expected<void, SystemError> write(QByteArray const& bytes) = 0;

        // Once; what was written is on the disk when it succeeds.
        virtual std::expected<void, SystemError> close() = 0;
    };

    virtual ~InstallFolder() = default;

    // Whether the entry is a real folder: a symbolic link to one is none.
    virtual std::expected<bool, SystemError> isFolder(QByteArray const& name) const = 0;

    virtual std::expected<void, SystemError> makeFolder(QByteArray const& name) = 0;

    // Makes an empty file of mode 0644. EEXIST when there is an entry of that name, a dangling link included.
    virtual std::expected<std::unique_ptr<NewFile>, SystemError> createFile(QByteArray const& name) = 0;

    // Gives a file another name, beside its first one or, on a file system without hard links, in its place. EEXIST as
    // above.
    virtual std::expected<void, SystemError> publish(QByteArray const& name, QByteArray const& newName) = 0;

    virtual std::expected<void, SystemError> remove(QByteArray const& name) = 0;
};

}
