#include "support/FakePictureDecoder.h"

#include <QList>

#include <algorithm>

namespace Quillory {

namespace {

struct Contents {
    PictureDecoder::Properties properties;
    FakePictureDecoder::Damage damage;
};

std::optional<Contents> contentsOf(QByteArray const& bytes)
{
    auto const words = bytes.trimmed().split(' ');
    if (words.size() != 7 || words[0] != "picture")
        return std::nullopt;
    return Contents { { static_cast<PictureDecoder::Container>(words[1].toInt()), words[2].toInt(),
                          { words[3].toInt(), words[4].toInt() } },
        static_cast<FakePictureDecoder::Damage>(words[5].toInt()) };
}

}

QByteArray FakePictureDecoder::picture(Properties const& properties, int mark, Damage damage)
{
    QByteArray bytes = "picture";
    for (int const number : { static_cast<int>(properties.container), properties.frameCount, properties.size.width(),
             properties.size.height(), static_cast<int>(damage), mark })
        bytes += ' ' + QByteArray::number(number);
    return bytes;
}

std::optional<PictureDecoder::Properties> FakePictureDecoder::properties(QByteArray const& bytes) const
{
    auto const contents = contentsOf(bytes);
    return contents ? std::optional(contents->properties) : std::nullopt;
}

std::optional<QImage> FakePictureDecoder::image(QByteArray const& bytes) const
{
    auto const contents = contentsOf(bytes);
    if (!contents)
        return std::nullopt;
    ++m_decodes;
    if (contents->damage == Damage::cannotBeDecoded)
        return std::nullopt;
    return QImage(contents->properties.size, QImage::Format_RGB32);
}

std::optional<QImage> FakePictureDecoder::thumbnail(QByteArray const& bytes, int longestSide) const
{
    auto const whole = image(bytes);
    if (!whole)
        return std::nullopt;
    auto const& size = whole->size();
    if (std::max(size.width(), size.height()) <= longestSide)
        return whole;
    return QImage(QSizeF(size).scaled(longestSide, longestSide, Qt::KeepAspectRatio).toSize().expandedTo({ 1, 1 }),
        QImage::Format_RGB32);
}

}
