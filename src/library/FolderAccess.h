#pragma once

#include "platform/FolderBookmarks.h"
#include "platform/Registration.h"
#include "platform/SystemError.h"
#include "platform/UserDefaults.h"

#include <QString>

#include <expected>
#include <optional>

namespace Quillory {

// The one folder that the user chose: its stored bookmark and the open scope. At most one scope is open at a time.
// Main thread only.
class FolderAccess {
public:
    FolderAccess(UserDefaults& defaults, FolderBookmarks& bookmarks);

    bool isStored() const;

    // The stored folder, reachable from now on. Absent when none is stored; a failure leaves the stored bookmark.
    std::expected<std::optional<QString>, SystemError> restore();

    // Takes another folder and stores it. A failure leaves everything as it was.
    std::expected<void, SystemError> remember(QString const& path);

    // Ends the scope.
    void release();

    std::optional<QString> const& url() const { return m_url; }
    bool isScoped() const { return m_scope.isActive(); }

private:
    std::expected<Registration, SystemError> startAccess(QString const& path);

    UserDefaults& m_defaults;
    FolderBookmarks& m_bookmarks;
    std::optional<QString> m_url;
    Registration m_scope;
};

}
