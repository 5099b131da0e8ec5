#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <optional>

namespace Quillory {

// Makes bitmaps of picture files. What a file is follows from its bytes alone, never from a name. Safe on any thread.
class PictureDecoder {
public:
    enum class Container { png, jpeg, gif, webp, tiff, bmp };

    struct Properties {
        Container container = Container::png;
        int frameCount = 1; // more than one for an animation or several pages
        QSize size;         // pixels, as they are stored

        bool operator==(Properties const&) const = default;
    };

    virtual ~PictureDecoder() = default;

    // As the file itself tells them, without being decoded. Absent for what is no picture of these kinds.
    virtual std::optional<Properties> properties(QByteArray const& bytes) const = 0;

    // The first frame as it is stored, ready to draw. Absent when it can't be decoded or would take too much memory.
    virtual std::optional<QImage> image(QByteArray const& bytes) const = 0;

    // The first frame the way up that it is meant to be seen, ready to draw, and made smaller where a side is longer
    // than `longestSide` pixels. Absent as above.
    virtual std::optional<QImage> thumbnail(QByteArray const& bytes, int longestSide) const = 0;
};

}
