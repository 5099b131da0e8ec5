#include "linux/qt/PngChunks.h"

#include <QByteArrayView>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <limits>

namespace Quillory {

namespace {

constexpr qsizetype signatureLength = 8;
constexpr qsizetype chunkFrame = 12; // length, type and checksum
constexpr auto pixelChunks = std::to_array<QByteArrayView>({ "IHDR", "PLTE", "tRNS", "sRGB", "iCCP", "IDAT", "IEND" });

}

PngChunks PngChunks::of(QByteArray const& png)
{
    PngChunks chunks;
    bool hasPixels = false;
    auto rest = QByteArrayView(png);
    chunks.pixelsOnly.reserve(png.size());
    auto const keep = [&](qsizetype length) {
        chunks.pixelsOnly += rest.first(length);
        rest = rest.sliced(length);
    };
    keep(std::min(signatureLength, rest.size()));
    while (rest.size() >= chunkFrame) {
        auto const length = qFromBigEndian<quint32>(rest.data());
        auto const type = rest.sliced(4, 4);
        if (length > static_cast<quint64>(rest.size() - chunkFrame))
            break;
        hasPixels = hasPixels || type == "IDAT";
        // An animation announces itself before the first pixels; after them it is ignored.
        if (type == "acTL" && length >= 4 && !hasPixels) {
            constexpr quint32 most = std::numeric_limits<int>::max();
            chunks.frameCount = static_cast<int>(std::min(qFromBigEndian<quint32>(rest.data() + 8), most));
        }
        if (type == "eXIf" && chunks.exif.isEmpty())
            chunks.exif = rest.sliced(8, static_cast<qsizetype>(length)).toByteArray();
        auto const size = static_cast<qsizetype>(length) + chunkFrame;
        if (std::ranges::find(pixelChunks, type) != std::ranges::end(pixelChunks))
            keep(size);
        else
            rest = rest.sliced(size);
    }
    // A torn end is left out: a decoder would make room for all that it promises before finding it missing.
    return chunks;
}

}
