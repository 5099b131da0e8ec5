#include "linux/qt/ExifOrientation.h"

#include <QTransform>
#include <QtEndian>

#include <algorithm>

namespace Quillory {

namespace {

// Numbers at places of the data, zero past its end.
class Numbers {
public:
    explicit Numbers(QByteArrayView data)
        : m_data(data)
        , m_isLittleEndian(data.startsWith("II"))
    {
    }

    template<typename Number>
    Number at(qint64 place) const
    {
        if (place < 0 || place + qint64 { sizeof(Number) } > m_data.size())
            return 0;
        auto const* const bytes = m_data.data() + place;
        return m_isLittleEndian ? qFromLittleEndian<Number>(bytes) : qFromBigEndian<Number>(bytes);
    }

private:
    QByteArrayView m_data;
    bool m_isLittleEndian;
};

}

ExifOrientation ExifOrientation::of(QByteArrayView exif)
{
    constexpr QByteArrayView introduction("Exif\0\0", 6);
    if (exif.startsWith(introduction))
        exif = exif.sliced(introduction.size());
    ExifOrientation orientation;
    if (!exif.startsWith(QByteArrayView("II*\0", 4)) && !exif.startsWith(QByteArrayView("MM\0*", 4)))
        return orientation;
    constexpr quint16 orientationTag = 0x112;
    constexpr quint16 shortNumber = 3;
    constexpr qint64 entryLength = 12;
    Numbers const numbers(exif);
    qint64 const directory = numbers.at<quint32>(4);
    auto const count = numbers.at<quint16>(directory);
    for (qint64 entry = 0; entry < count; ++entry) {
        auto const place = directory + 2 + entry * entryLength;
        if (numbers.at<quint16>(place) != orientationTag || numbers.at<quint16>(place + 2) != shortNumber)
            continue;
        auto const number = numbers.at<quint16>(place + 8);
        if (number >= 1 && number <= 8)
            orientation.m_number = number;
        break;
    }
    return orientation;
}

ExifOrientation ExifOrientation::ofWebp(QByteArrayView webp)
{
    constexpr qsizetype header = 12;
    constexpr qsizetype chunkHeader = 8;
    auto rest = webp.sliced(std::min(header, webp.size()));
    while (rest.size() > chunkHeader) {
        auto const length = qsizetype { qFromLittleEndian<quint32>(rest.data() + 4) };
        auto const contents = rest.sliced(chunkHeader);
        if (rest.startsWith("EXIF"))
            return of(contents.first(std::min(length, contents.size())));
        rest = contents.sliced(std::min(length + length % 2, contents.size()));
    }
    return {};
}

QImage ExifOrientation::upright(QImage const& stored) const
{
    // From five on the picture lies on its side as well.
    bool const isMirrored = m_number == 2 || m_number == 3 || m_number == 7 || m_number == 8;
    bool const isFlipped = m_number == 3 || m_number == 4 || m_number == 5 || m_number == 8;
    auto const seen = isMirrored || isFlipped ? stored.mirrored(isMirrored, isFlipped) : stored;
    return m_number < 5 ? seen : seen.transformed(QTransform().rotate(90));
}

}
