#pragma once

#include "library/PreparedImage.h"
#include "library/Sheet.h"
#include "platform/FileSystem.h"
#include "platform/PictureDecoder.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace Quillory {

// The icons of a structured sheet by reference, and a warning for each reference that gave none.
struct PreparedIcons {
    QMap<QString, PreparedImage> images;
    QStringList warnings;
};

// Prepares the pictures of one load's sheets. A content is decoded once, however many sheets show it, and not at all
// when a previous sheet has it. For one thread; all it is given must outlive it.
class SheetPictures {
public:
    static constexpr qint64 markdownImageLimit = 10'485'760; // bytes; a file of exactly this size is read
    static constexpr int markdownImageSize = 720;            // pixels, the longest side after decoding
    static constexpr qint64 iconLimit = 262'144;             // bytes, likewise
    static constexpr int iconSide = 256;                     // pixels, exactly
    static constexpr qsizetype iconReferenceLimit = 1024;    // bytes of UTF-8
    static constexpr qsizetype shownReferenceLength = 100;   // characters

    SheetPictures(OpenFolder const& folder, PictureDecoder const& decoder, QList<Sheet> const& previous = {});

    // By the reference as written. One that can't be shown is left out in silence.
    QMap<QString, PreparedImage> prepareMarkdownImages(ParsedMarkdown const& parsed);

    PreparedIcons prepareIcons(ShortcutSheet const& sheet);

private:
    using Decode = std::function<std::optional<QImage>(QByteArray const& bytes)>;

    // One of the two uses of a picture: each reads and decodes in its own way.
    struct Use {
        qint64 limit;
        Decode decode;
        QHash<QByteArray, std::optional<PreparedImage>> ofPath;
        QHash<std::uint64_t, std::optional<PreparedImage>> ofFingerprint;
    };

    std::optional<PreparedImage> prepare(QByteArray const& path, Use& use) const;
    std::optional<PreparedImage> icon(QString const& reference);

    OpenFolder const& m_folder;
    Use m_markdownImages;
    Use m_icons;
};

}
