#include "platform/linux/qt/QtPictureDecoder.h"

#include "platform/linux/qt/PictureContainers.h"
#include "platform/linux/qt/PngChunks.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>

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
        }
        m_buffer.setBuffer(&m_bytes);
        m_buffer.open(QIODevice::ReadOnly);
        m_reader.setAutoDetectImageFormat(false); // or another decoder is asked when this one refuses
        m_reader.setDevice(&m_buffer);
        m_reader.setFormat(formatName(container));
    }

    QSize size() const { return m_reader.size(); }

    int frameCount() const { return m_container == Container::png ? m_pngFrames : m_reader.imageCount(); }

    bool isWithinMemory() const
    {
        auto const stored = size();
        return !stored.isEmpty() && qint64 { stored.width() } * stored.height() <= QtPictureDecoder::mostPixels;
    }

    void turnUpright() { m_reader.setAutoTransform(true); }

    void scaleTo(int longestSide)
    {
        auto const stored = size();
        if (std::max(stored.width(), stored.height()) > longestSide)
            m_reader.setScaledSize(
                QSizeF(stored).scaled(longestSide, longestSide, Qt::KeepAspectRatio).toSize().expandedTo({ 1, 1 }));
    }

    std::optional<QImage> decoded()
    {
        QImage picture;
        if (!m_reader.read(&picture) || picture.isNull())
            return std::nullopt;
        return readyToDraw(std::move(picture));
    }

private:
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
    QBuffer m_buffer;
    QImageReader m_reader;
};

}

QtPictureDecoder::QtPictureDecoder()
{
    QImageReader::setAllocationLimit(mostMegabytes);
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
