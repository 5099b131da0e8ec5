#pragma once

#include "support/FakeFileSystem.h"

#include <cerrno>

namespace Quillory {

// What FakeFileSystem.cpp and FakeInstallFolder.cpp share.
struct FakeFileSystem::Folder {
    std::mutex mutex;
    std::map<QByteArray, Entry> entries;
    std::map<QByteArray, int> reads;
    int opens = 0;
    int openError = 0;
    int listingError = 0;
    bool isRemoved = false;
    QByteArray path;

    bool has(QByteArray const& folder) const
    {
        auto const next = entries.lower_bound(folder + '/');
        return next != entries.end() && next->first.startsWith(folder + '/');
    }

    // Of the folder, or of the one below it whose names begin with `prefix`.
    std::expected<std::vector<QByteArray>, SystemError> everyName(QByteArray const& prefix)
    {
        std::lock_guard const lock(mutex);
        if (isRemoved)
            return std::unexpected(SystemError(ENOENT));
        if (listingError)
            return std::unexpected(SystemError(listingError));
        std::vector<QByteArray> names;
        // Last name first: nobody may rely on an order.
        for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
            if (entry->first.startsWith(prefix) && entry->first.indexOf('/', prefix.size()) < 0)
                names.push_back(entry->first.sliced(prefix.size()));
        }
        return names;
    }
};

inline bool isNameOfChild(QByteArray const& name)
{
    return !name.isEmpty() && name != "." && name != ".." && !name.contains('/') && !name.contains('\0');
}

}
