#pragma once

#include "platform/SandboxJob.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <cstdint>
#include <memory>

namespace Quillory {

// What a load leaves to the next one beside its sheets: jobs that it did not wait for, which end when nothing holds them,
// and pictures that need not be tried again. Immutable once the load has ended.
struct LoadMemory {
    // By the fingerprint of their bytes, apart for each use of a picture.
    struct Pictures {
        QHash<std::uint64_t, std::shared_ptr<SandboxJob>> underWay;
        QSet<std::uint64_t> refused;
    };

    QHash<QString, std::shared_ptr<SandboxJob>> sheets; // by id
    Pictures thumbnails;
    Pictures icons;

    bool isUnderWay() const { return !sheets.isEmpty() || !thumbnails.underWay.isEmpty() || !icons.underWay.isEmpty(); }
};

}
