#pragma once

#include <QImage>

#include <cstdint>

namespace Quillory {

// A picture of a sheet, decoded and ready to draw. Immutable once made, so that it may cross threads.
struct PreparedImage {
    QImage cgImage;
    std::uint64_t fingerprint = 0; // hash of the file's bytes, valid within one run of the process

    // The fingerprints alone are compared, never the bitmaps.
    bool operator==(PreparedImage const& other) const { return fingerprint == other.fingerprint; }
};

}
