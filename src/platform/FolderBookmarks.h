#pragma once

#include "platform/Registration.h"
#include "platform/SystemError.h"

#include <QByteArray>
#include <QString>

#include <expected>

namespace Quillory {

// Tokens that stand for a folder the user chose and that can be stored. Main thread only.
class FolderBookmarks {
public:
    struct Resolved {
        QString path;
        bool isStale = false; // the token still led there, but a new one should replace it
        bool operator==(Resolved const&) const = default;
    };

    virtual ~FolderBookmarks() = default;

    virtual std::expected<QByteArray, SystemError> bookmark(QString const& path) const = 0;
    virtual std::expected<Resolved, SystemError> resolve(QByteArray const& bookmark) const = 0;

    // Makes the folder reachable until the registration ends. Inactive when no scope could be opened.
    virtual Registration startAccess(QString const& path) = 0;

    virtual bool isReadable(QString const& path) const = 0;
};

}
