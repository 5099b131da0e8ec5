#include "library/LibraryLoad.h"

#include "library/LibraryError.h"
#include "text/FileNames.h"
#include "text/StrictUtf8.h"
#include "text/TextOrder.h"

#include <QCoreApplication>
#include <QHash>

#include <algorithm>
#include <vector>

namespace Quillory {

namespace {

struct Entry {
    QByteArray bytes;
    QString name;
    QString lowered;
};

bool isStructuredName(QStringView lowered)
{
    return lowered.endsWith(QLatin1StringView(".quillory.json"));
}

bool isSheetName(QStringView lowered)
{
    return pathExtension(lowered) == QLatin1StringView("md") || isStructuredName(lowered);
}

bool comesBefore(Entry const& a, Entry const& b)
{
    if (auto const order = compareText(a.lowered, b.lowered); order != 0)
        return order < 0;
    if (auto const order = compareText(a.name, b.name); order != 0)
        return order < 0;
    return a.bytes < b.bytes; // canonically equal names can stand side by side
}

std::vector<Entry> sheetEntries(std::vector<QByteArray> const& names)
{
    std::vector<Entry> entries;
    for (auto const& bytes : names) {
        auto const name = FileName::fromBytes(bytes).text;
        auto const lowered = name.toLower();
        if (isSheetName(lowered))
            entries.push_back({ bytes, name, lowered });
    }
    std::ranges::sort(entries, comesBefore);
    return entries;
}

Sheet errorSheet(QString const& id, QString const& error)
{
    return { .id = id, .title = pathStem(id).toString(), .error = error };
}

Sheet structuredSheet(QString const& id, QString const& text, QByteArray const& bytes, SheetPictures& pictures)
{
    auto const document = ShortcutSheet::decode(bytes);
    if (!document)
        return errorSheet(id, document.error().description());
    auto icons = pictures.prepareIcons(*document);
    return { .id = id,
        .title = document->title,
        .source = text,
        .images = std::move(icons.images),
        .shortcuts = *document,
        .iconWarnings = std::move(icons.warnings) };
}

Sheet markdownSheet(QString const& id, QString const& text, QByteArray const& bytes, SheetPictures& pictures)
{
    auto parsed = ParsedMarkdown::parsingUtf8(bytes);
    auto const title = parsed.firstHeadingTitle().value_or(pathStem(id).toString());
    auto images = pictures.prepareMarkdownImages(parsed);
    return { .id = id, .title = title, .source = text, .parsed = std::move(parsed), .images = std::move(images) };
}

// The sheet that was made of the same text before, if there was one: also behind the error of a later read. The files
// that it refers to may have changed all the same.
std::optional<Sheet> reused(Sheet const* previous, QByteArray const& bytes, SheetPictures& pictures)
{
    if (!previous || !(previous->parsed || previous->shortcuts) || !isStrictUtf8Of(bytes, previous->source))
        return std::nullopt;
    auto sheet = *previous;
    sheet.error.reset();
    if (sheet.parsed) {
        sheet.images = pictures.prepareMarkdownImages(*sheet.parsed);
    } else {
        auto icons = pictures.prepareIcons(*sheet.shortcuts);
        sheet.images = std::move(icons.images);
        sheet.iconWarnings = std::move(icons.warnings);
    }
    return sheet;
}

Sheet sheetOfText(QString const& id, QString const& text, QByteArray const& bytes, SheetPictures& pictures)
{
    return isStructuredName(id.toLower()) ? structuredSheet(id, text, bytes, pictures)
                                          : markdownSheet(id, text, bytes, pictures);
}

}

std::optional<Sheet> loadSheet(
    OpenFolder const& folder, SheetPictures& pictures, QByteArray const& name, Sheet const* previous)
{
    auto const [id, isUtf8] = FileName::fromBytes(name);
    auto const readAll = [&] { return folder.read(name, sheetSizeLimit + 1); };
    std::optional<decltype(readAll())> early;
    if (previous && isUtf8) {
        // Nearly every file of a reload is as it was, and what can be read needs no look before it.
        early = readAll();
        if (auto sheet = *early && **early ? reused(previous, ***early, pictures) : std::nullopt)
            return sheet;
    }
    auto const status = folder.status(name);
    if (!status)
        return errorSheet(id, status.error().localizedDescription());
    if (!status->isRegularFile || status->isSymbolicLink)
        return std::nullopt;
    if (!isUtf8)
        return errorSheet(id,
            QCoreApplication::translate("Library", "The name of this file is not valid UTF-8. Give it a new name."));
    if (status->size > sheetSizeLimit)
        return errorSheet(id, description(LibraryError::tooLarge));

    auto const read = early ? *std::move(early) : readAll();
    if (!read)
        return errorSheet(id, read.error().localizedDescription());
    if (!*read)
        return std::nullopt;
    auto const& bytes = **read;
    if (bytes.size() > sheetSizeLimit)
        return errorSheet(id, description(LibraryError::tooLarge));
    auto text = decodeStrictUtf8(bytes);
    if (!text)
        return errorSheet(id, description(LibraryError::encoding));
    text->squeeze();
    return sheetOfText(id, *text, bytes, pictures);
}

std::expected<QList<Sheet>, SystemError> loadLibrary(
    FileSystem const& files, PictureDecoder const& decoder, QString const& folder, QList<Sheet> const& previous)
{
    auto const open = files.openFolder(folder);
    if (!open)
        return std::unexpected(open.error());
    auto const names = (*open)->names();
    if (!names)
        return std::unexpected(names.error());

    QHash<QString, Sheet const*> known;
    for (auto const& sheet : previous)
        known.insert(sheet.id, &sheet);

    SheetPictures pictures(**open, decoder, previous);
    QList<Sheet> sheets;
    for (auto const& entry : sheetEntries(*names)) {
        if (auto sheet = loadSheet(**open, pictures, entry.bytes, known.value(entry.name)))
            sheets.append(*std::move(sheet));
    }
    return sheets;
}

}
