#include "library/SheetPictures.h"

#include "library/LibraryReference.h"
#include "text/FileNames.h"
#include "text/Graphemes.h"
#include "text/TextOrder.h"

#include <QCoreApplication>
#include <QHashSeed>

#include <algorithm>

namespace Quillory {

namespace {

std::uint64_t fingerprintOf(QByteArray const& bytes)
{
    return qHashBits(bytes.constData(), static_cast<std::size_t>(bytes.size()), QHashSeed::globalSeed());
}

std::optional<QImage> decodedIcon(PictureDecoder const& decoder, QByteArray const& bytes)
{
    constexpr QSize size(SheetPictures::iconSide, SheetPictures::iconSide);
    using Properties = PictureDecoder::Properties;
    if (decoder.properties(bytes) != Properties { PictureDecoder::Container::png, 1, size })
        return std::nullopt;
    auto image = decoder.image(bytes);
    return image && image->size() == size ? image : std::nullopt;
}

QString extensionOf(QByteArray const& path)
{
    auto const name = FileName::fromBytes(path.sliced(path.lastIndexOf('/') + 1)).text;
    return pathExtension(name).toString().toLower();
}

QString warningOf(QString const& reference)
{
    return QCoreApplication::translate("Library",
        "Icon %1: use a readable, static 256 × 256 PNG inside the library, no larger than 256 KB. "
        "Showing a placeholder.")
        .arg(firstGraphemes(reference, SheetPictures::shownReferenceLength));
}

}

SheetPictures::SheetPictures(OpenFolder const& folder, PictureDecoder const& decoder, QList<Sheet> const& previous)
    : m_folder(folder)
    , m_markdownImages { .limit = markdownImageLimit,
        .decode = [&decoder](QByteArray const& bytes) { return decoder.thumbnail(bytes, markdownImageSize); } }
    , m_icons { .limit = iconLimit,
        .decode = [&decoder](QByteArray const& bytes) { return decodedIcon(decoder, bytes); } }
{
    for (auto const& sheet : previous) {
        auto& use = sheet.shortcuts ? m_icons : m_markdownImages;
        for (auto const& image : sheet.images)
            use.ofFingerprint.insert(image.fingerprint, image);
    }
}

QMap<QString, PreparedImage> SheetPictures::prepareMarkdownImages(ParsedMarkdown const& parsed)
{
    QMap<QString, PreparedImage> images;
    for (auto const& reference : parsed.imageSources()) {
        auto const path = resolveLibraryReference(reference, m_folder);
        if (!path)
            continue;
        if (auto image = prepare(*path, m_markdownImages))
            images.insert(reference, *std::move(image));
    }
    return images;
}

PreparedIcons SheetPictures::prepareIcons(ShortcutSheet const& sheet)
{
    auto references = sheet.icons();
    references.removeDuplicates();
    std::ranges::stable_sort(references, [](QString const& a, QString const& b) { return compareText(a, b) < 0; });
    PreparedIcons icons;
    for (auto const& reference : references) {
        if (auto image = icon(reference))
            icons.images.insert(reference, *std::move(image));
        else
            icons.warnings.append(warningOf(reference));
    }
    return icons;
}

std::optional<PreparedImage> SheetPictures::icon(QString const& reference)
{
    if (reference.toUtf8().size() > iconReferenceLimit)
        return std::nullopt;
    auto const path = resolveLibraryReference(reference, m_folder);
    if (!path || extensionOf(*path) != QLatin1StringView("png"))
        return std::nullopt;
    return prepare(*path, m_icons);
}

std::optional<PreparedImage> SheetPictures::prepare(QByteArray const& path, Use& use) const
{
    if (auto const known = use.ofPath.constFind(path); known != use.ofPath.cend())
        return *known;
    auto& ofPath = use.ofPath[path];
    auto const bytes = readLibraryFile(path, m_folder, use.limit);
    if (!bytes)
        return ofPath;
    auto const fingerprint = fingerprintOf(*bytes);
    auto const made = use.ofFingerprint.constFind(fingerprint);
    if (made != use.ofFingerprint.cend())
        return ofPath = *made;
    if (auto image = use.decode(*bytes))
        ofPath = PreparedImage { *std::move(image), fingerprint };
    use.ofFingerprint.insert(fingerprint, ofPath);
    return ofPath;
}

}
