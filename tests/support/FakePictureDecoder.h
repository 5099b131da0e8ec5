#pragma once

#include "platform/PictureDecoder.h"

#include <QList>

#include <algorithm>

namespace Quillory {

// Decodes pictures that say what they are: `picture` makes their bytes. Counts what it decodes. For one thread.
class FakePictureDecoder final : public PictureDecoder {
public:
    enum class Damage { none, cannotBeDecoded };

    // `mark` tells pictures of the same properties apart.
    static QByteArray picture(Properties const& properties, int mark = 0, Damage damage = Damage::none)
    {
        QByteArray bytes = "picture";
        for (int const number : { static_cast<int>(properties.container), properties.frameCount,
                 properties.size.width(), properties.size.height(), static_cast<int>(damage), mark })
            bytes += ' ' + QByteArray::number(number);
        return bytes;
    }

    int decodes() const { return m_decodes; }

    std::optional<Properties> properties(QByteArray const& bytes) const override
    {
        auto const words = bytes.trimmed().split(' ');
        if (words.size() != 7 || words[0] != "picture")
            return std::nullopt;
        return Properties { static_cast<Container>(words[1].toInt()), words[2].toInt(),
            { words[3].toInt(), words[4].toInt() } };
    }

    std::optional<QImage> image(QByteArray const& bytes) const override
    {
        auto const said = properties(bytes);
        if (!said)
            return std::nullopt;
        ++m_decodes;
        if (bytes.split(' ')[5] != QByteArray::number(static_cast<int>(Damage::none)))
            return std::nullopt;
        return QImage(said->size, QImage::Format_RGB32);
    }

    std::optional<QImage> thumbnail(QByteArray const& bytes, int longestSide) const override
    {
        auto const whole = image(bytes);
        if (!whole || std::max(whole->width(), whole->height()) <= longestSide)
            return whole;
        auto const size = QSizeF(whole->size()).scaled(longestSide, longestSide, Qt::KeepAspectRatio).toSize();
        return QImage(size.expandedTo({ 1, 1 }), QImage::Format_RGB32);
    }

private:
    mutable int m_decodes = 0;
};

}
