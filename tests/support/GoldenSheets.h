#pragma once

#include "library/ShortcutSheet.h"
#include "rendering/MarkdownRenderer.h"
#include "rendering/ShortcutRenderer.h"
#include "textlayout/FontTextMeasure.h"

#include <QDir>
#include <QFile>

namespace Quillory {

// The sheets that the goldens are made of, with pictures of one colour each.
struct GoldenSheets {
    static constexpr QRgb pictureColor = 0xFF00B7FF;

    static QStringList names()
    {
        return QDir(QStringLiteral(QUILLORY_GOLDEN_SHEETS)).entryList({ u"*.md"_qs, u"*.json"_qs }, QDir::Files);
    }

    static RenderedMarkdown rendered(QString const& name, double width)
    {
        QMap<QString, PreparedImage> images;
        for (auto const& [file, size] : { std::pair(u"small.png"_qs, QSize(6, 4)), { u"wide.png"_qs, { 720, 100 } } }) {
            QImage image(size, QImage::Format_RGB32);
            image.fill(pictureColor);
            images.insert(file, { .cgImage = image });
        }
        QFile file(QDir(QStringLiteral(QUILLORY_GOLDEN_SHEETS)).filePath(name));
        auto const bytes = file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
        constexpr double textSize = 16;
        if (!name.endsWith(u".json"))
            return MarkdownRenderer::render(QString::fromUtf8(bytes), {}, images, textSize);
        return ShortcutRenderer::render(
            ShortcutSheet::decode(bytes).value(), images, width, textSize, FontTextMeasure(FontSet::ofDesktop()));
    }
};

}
