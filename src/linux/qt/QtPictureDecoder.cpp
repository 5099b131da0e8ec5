#include "linux/qt/QtPictureDecoder.h"

#include "linux/qt/ExifOrientation.h"
#include "linux/qt/PictureContainers.h"
#include "linux/qt/PngChunks.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>
#include <QtEndian>

#include <algorithm>

namespace Quillory {

namespace {

using Container = PictureDecoder::Container;

// A picture's bytes under the one decoder that is meant for them.
class OpenPicture {
public:
    OpenPicture(Container container, QByteArray const& bytes)
        : m_container(container)
        , m_bytes(bytes)
    {
        if (container == Container::png) {
            auto const chunks = PngChunks::of(bytes);
            m_bytes = chunks.pixelsOnly;
            m_pngFrames = chunks.frameCount;
            m_orientation = ExifOrientation::of(chunks.exif);
        } else if (container == Container::webp) {
            m_orientation = ExifOrientation::ofWebp(bytes);
        }
        m_buffer.setBuffer(&m_bytes);
        m_buffer.open(QIODevice::ReadOnly);
        m_reader.setAutoDetectImageFormat(false); // or another decoder is asked when this one refuses
        m_reader.setDevice(&m_buffer);
        m_reader.setFormat(formatName(container));
    }

    QSize size() const { return m_container == Container::gif ? screenOfGif() : m_reader.size(); }

    int frameCount() const { return m_container == Container::png ? m_pngFrames : m_reader.imageCount(); }

    bool isWithinMemory() const
    {
        auto const stored = size();
        return !stored.isEmpty() && qint64 { stored.width() } * stored.height() <= QtPictureDecoder::mostPixels;
    }

    void turnUpright()
    {
        m_isUpright = true;
        m_reader.setAutoTransform(true);
    }

    void scaleTo(int longestSide)
    {
        m_longestSide = longestSide;
        if (exceeds(size()))
            m_reader.setScaledSize(bounded(size()));
    }

    std::optional<QImage> decoded()
    {
        QImage picture;
        if (!m_reader.read(&picture) || picture.isNull())
            return std::nullopt;
        // Not every decoder keeps to what it said of the size.
        if (exceeds(picture.size()))
            picture = picture.scaled(bounded(picture.size()), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        if (m_isUpright && m_reader.transformation() == QImageIOHandler::TransformationNone)
            picture = m_orientation.upright(picture);
        return readyToDraw(std::move(picture));
    }

private:
    // The decoder tells the size of the first frame, and decodes the whole screen that it stands on.
    QSize screenOfGif() const
    {
        constexpr qsizetype place = 6;
        if (m_bytes.size() < place + 4)
            return {};
        auto const* const bytes = m_bytes.constData() + place;
        return { qFromLittleEndian<quint16>(bytes), qFromLittleEndian<quint16>(bytes + 2) };
    }

    bool exceeds(QSize size) const { return m_longestSide && std::max(size.width(), size.height()) > *m_longestSide; }

    QSize bounded(QSize size) const
    {
        return QSizeF(size).scaled(*m_longestSide, *m_longestSide, Qt::KeepAspectRatio).toSize().expandedTo({ 1, 1 });
    }

    // In the colours and the layout that painting needs, and without the texts that a file may carry along.
    static std::optional<QImage> readyToDraw(QImage picture)
    {
        if (picture.colorSpace().isValid() && picture.colorSpace() != QColorSpace(QColorSpace::SRgb))
            picture.convertToColorSpace(QColorSpace(QColorSpace::SRgb));
        picture.convertTo(picture.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
        QImage plain(picture.size(), picture.format());
        if (picture.isNull() || plain.isNull())
            return std::nullopt;
        for (int line = 0; line < picture.height(); ++line)
            std::copy_n(picture.constScanLine(line), qsizetype { 4 } * picture.width(), plain.scanLine(line));
        return plain;
    }

    Container m_container;
    QByteArray m_bytes;
    int m_pngFrames = 1;
    ExifOrientation m_orientation; // where the reader knows none
    bool m_isUpright = false;
    std::optional<int> m_longestSide;
    QBuffer m_buffer;
    QImageReader m_reader;
};

}

QtPictureDecoder::QtPictureDecoder()
{
    QImageReader::setAllocationLimit(mostMegabytes);
}

void QtPictureDecoder::loadPlugins()
{
    (void)QImageReader::supportedImageFormats();
}

std::optional<PictureDecoder::Properties> QtPictureDecoder::properties(QByteArray const& bytes) const
{
    auto const container = containerOf(bytes);
    if (!container)
        return std::nullopt;
    OpenPicture const picture(*container, bytes);
    if (picture.size().isEmpty())
        return std::nullopt;
    return Properties { *container, picture.frameCount(), picture.size() };
}

std::optional<QImage> QtPictureDecoder::image(QByteArray const& bytes) const
{
    auto const container = containerOf(bytes);
    if (!container)
        return std::nullopt;
    OpenPicture picture(*container, bytes);
    return picture.isWithinMemory() ? picture.decoded() : std::nullopt;
}

std::optional<QImage> QtPictureDecoder::thumbnail(QByteArray const& bytes, int longestSide) const
{
    auto const container = containerOf(bytes);
    if (!container)
        return std::nullopt;
    OpenPicture picture(*container, bytes);
    if (!picture.isWithinMemory())
        return std::nullopt;
    picture.turnUpright();
    picture.scaleTo(longestSide);
    return picture.decoded();
}

}
