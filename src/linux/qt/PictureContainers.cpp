#include "linux/qt/PictureContainers.h"

#include <array>

namespace Quillory {

using Container = PictureDecoder::Container;

std::optional<Container> containerOf(QByteArrayView bytes)
{
    struct Beginning {
        QByteArrayView bytes;
        Container container;
    };
    static constexpr auto beginnings = std::to_array<Beginning>({
        { "\x89PNG\r\n\x1A\n", Container::png },
        { "\xFF\xD8\xFF", Container::jpeg },
        { "GIF87a", Container::gif },
        { "GIF89a", Container::gif },
        { QByteArrayView("II*\0", 4), Container::tiff },
        { QByteArrayView("MM\0*", 4), Container::tiff },
        { "BM", Container::bmp },
    });
    for (auto const& beginning : beginnings) {
        if (bytes.startsWith(beginning.bytes))
            return beginning.container;
    }
    if (bytes.startsWith("RIFF") && bytes.size() >= 12 && bytes.sliced(8, 4) == QByteArrayView("WEBP"))
        return Container::webp;
    return std::nullopt;
}

QByteArray formatName(Container container)
{
    switch (container) {
    case Container::png:
        return "png";
    case Container::jpeg:
        return "jpeg";
    case Container::gif:
        return "gif";
    case Container::webp:
        return "webp";
    case Container::tiff:
        return "tiff";
    case Container::bmp:
        return "bmp";
    }
    return {};
}

}
