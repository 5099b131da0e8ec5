#include "library/ForeignBytes.h"

#include "rendering/ParsedMarkdown.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace Quillory::ForeignBytes {

namespace {

enum Operation : std::uint32_t { parseMarkdown = 1, decodeThumbnail, decodeIcon };

// Before the rows of a picture, which follow each other without a gap, four bytes a pixel.
struct PictureHeader {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::uint32_t hasAlpha = 0;
    std::uint32_t unused = 0;
};

constexpr auto formatWithAlpha = QImage::Format_ARGB32_Premultiplied;
constexpr auto formatWithoutAlpha = QImage::Format_RGB32;

void write(ByteSink const& sink, Picture const& picture)
{
    if (!picture)
        return;
    PictureHeader const header { picture->width(), picture->height(), picture->format() == formatWithAlpha ? 1U : 0U };
    sink(std::as_bytes(std::span(&header, 1)));
    for (int line = 0; line < picture->height(); ++line)
        sink(std::as_bytes(
            std::span(picture->constScanLine(line), std::size_t { 4 } * static_cast<unsigned>(header.width))));
}

void letGo(void* owner)
{
    delete static_cast<SealedBytes*>(owner);
}

// Absent for bytes that are no picture; an absent picture has none.
std::optional<Picture> adopt(SealedBytes const& sealed)
{
    auto const bytes = sealed.bytes();
    if (bytes.empty())
        return Picture();
    if (bytes.size() < sizeof(PictureHeader) || reinterpret_cast<std::uintptr_t>(bytes.data()) % alignof(QRgb) != 0)
        return std::nullopt;
    PictureHeader header;
    std::memcpy(&header, bytes.data(), sizeof header);
    auto const pixels = std::int64_t { header.width } * header.height;
    if (header.width <= 0 || header.height <= 0 || header.hasAlpha > 1 || header.unused != 0
        || bytes.size() - sizeof header != static_cast<std::uint64_t>(pixels) * 4)
        return std::nullopt;
    auto const* const rows = reinterpret_cast<uchar const*>(bytes.data() + sizeof header);
    return QImage(rows, header.width, header.height, qsizetype { 4 } * header.width,
        header.hasAlpha != 0 ? formatWithAlpha : formatWithoutAlpha, letGo, new SealedBytes(sealed));
}

// With an answer that passes, or nothing.
template<typename Passes>
SandboxValue pictureThat(SealedBytes const& bytes, Passes passes)
{
    auto picture = adopt(bytes);
    if (!picture || (*picture && !passes((*picture)->size())))
        return {};
    return std::make_shared<Picture const>(*std::move(picture));
}

Picture decodedIcon(PictureDecoder const& decoder, QByteArray const& bytes, int side)
{
    QSize const size(side, side);
    using Properties = PictureDecoder::Properties;
    if (decoder.properties(bytes) != Properties { PictureDecoder::Container::png, 1, size })
        return std::nullopt;
    auto image = decoder.image(bytes);
    return image && image->size() == size ? image : std::nullopt;
}

}

SandboxRequest markdown(QByteArray utf8)
{
    return { parseMarkdown, 0, std::move(utf8), [](SealedBytes const& bytes) -> SandboxValue {
                auto tree = ParsedMarkdown::adopting(bytes);
                return tree ? std::make_shared<ParsedMarkdown const>(*std::move(tree)) : nullptr;
            } };
}

SandboxRequest thumbnail(QByteArray bytes, int longestSide)
{
    return { decodeThumbnail, static_cast<std::uint32_t>(longestSide), std::move(bytes),
        [longestSide](SealedBytes const& answer) {
            return pictureThat(
                answer, [&](QSize size) { return std::max(size.width(), size.height()) <= longestSide; });
        } };
}

SandboxRequest icon(QByteArray bytes, int side)
{
    return { decodeIcon, static_cast<std::uint32_t>(side), std::move(bytes), [side](SealedBytes const& answer) {
                return pictureThat(answer, [&](QSize size) { return size == QSize(side, side); });
            } };
}

Interpreter interpreter(PictureDecoder const& decoder)
{
    return [&decoder](std::uint32_t operation, std::uint32_t argument, std::span<std::byte const> bytes,
               ByteSink const& answer) {
        auto const whole = QByteArray::fromRawData(
            reinterpret_cast<char const*>(bytes.data()), static_cast<qsizetype>(bytes.size()));
        switch (operation) {
        case parseMarkdown:
            return ParsedMarkdown::parsingUtf8(whole).write(answer);
        case decodeThumbnail:
            return write(answer, decoder.thumbnail(whole, static_cast<int>(argument)));
        case decodeIcon:
            return write(answer, decodedIcon(decoder, whole, static_cast<int>(argument)));
        default:
            return;
        }
    };
}

}
