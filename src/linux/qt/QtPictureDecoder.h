#pragma once

#include "platform/PictureDecoder.h"

namespace Quillory {

// The toolkit's decoders, each for its own kind of picture. Which kinds there are follows from the plugins installed.
class QtPictureDecoder final : public PictureDecoder {
public:
    // A picture of more pixels is refused by its header: some decoders need eight bytes a pixel.
    static constexpr qint64 mostPixels = 67'108'864;
    static constexpr int mostMegabytes = 256; // of one bitmap while it is decoded

    // Sets the toolkit's own limit for the whole process.
    QtPictureDecoder();

    // Loads the decoders now, for a process that can't open files later.
    static void loadPlugins();

    std::optional<Properties> properties(QByteArray const& bytes) const override;
    std::optional<QImage> image(QByteArray const& bytes) const override;
    std::optional<QImage> thumbnail(QByteArray const& bytes, int longestSide) const override;
};

}
