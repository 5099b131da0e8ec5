#pragma once

#include <QByteArray>

namespace Quillory {

// Properties of a PNG that its chunks tell without being decoded.
struct PngChunks {
    int frameCount = 1; // what an animation announces, else 1

    // The file without all that does not make its pixels. Texts in it may grow a thousandfold when they are unpacked,
    // each up to the decoder's own limit and as many as there are.
    QByteArray pixelsOnly;

    QByteArray exif; // of the camera, empty without

    static PngChunks of(QByteArray const& png);
};

}
