#include "library/LibraryLoad.h"

#include "library/LibraryError.h"
#include "text/FileNames.h"
#include "text/StrictUtf8.h"
#include "text/TextOrder.h"

#include <QCoreApplication>
#include <QHash>

#include <algorithm>
#include <atomic>
#include <future>
#include <vector>

namespace Quillory {

namespace {

struct Entry {
    QByteArray bytes;
    QString name;
    QString lowered;
    Sheet const* previous = nullptr;
    bool isUnchanged = false; // its bytes are the text of the previous sheet
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

std::vector<Entry> sheetEntries(std::vector<QByteArray> const& names, QList<Sheet> const& previous)
{
    QHash<QString, Sheet const*> known;
    for (auto const& sheet : previous) {
        if (sheet.parsed || sheet.shortcuts)
            known.insert(sheet.id, &sheet);
    }
    std::vector<Entry> entries;
    entries.reserve(names.size());
    for (auto const& bytes : names) {
        auto const [name, isUtf8] = FileName::fromBytes(bytes);
        auto const lowered = name.toLower();
        if (isSheetName(lowered))
            entries.push_back({ bytes, name, lowered, isUtf8 ? known.value(name) : nullptr });
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

// The sheet that was made of the same text before, also when a later read failed. The files that it refers to
// may have changed all the same.
Sheet reused(Sheet const& previous, SheetPictures& pictures)
{
    auto sheet = previous;
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

bool isUnchanged(OpenFolder const& folder, Entry const& entry)
{
    if (!entry.previous)
        return false;
    // No look before it: what is no regular file any more is not read either.
    auto const bytes = folder.read(entry.bytes, sheetSizeLimit + 1);
    return bytes && *bytes && isStrictUtf8Of(**bytes, entry.previous->source);
}

// Nearly every file of a reload is as it was, so that reading them is most of its cost: two threads share it.
void findUnchanged(OpenFolder const& folder, std::vector<Entry>& entries)
{
    constexpr std::size_t batch = 16; // files
    std::atomic<std::size_t> next = 0;
    auto const look = [&] {
        for (auto start = next.fetch_add(batch); start < entries.size(); start = next.fetch_add(batch)) {
            for (auto index = start; index < std::min(start + batch, entries.size()); ++index)
                entries[index].isUnchanged = isUnchanged(folder, entries[index]);
        }
    };
    // Without a second thread its look is deferred, and finds nothing left to do.
    constexpr auto inAnyWay = std::launch::async | std::launch::deferred;
    auto const second = entries.size() > batch ? std::async(inAnyWay, look) : std::future<void>();
    look();
    if (second.valid())
        second.wait();
}

Sheet sheetOfText(QString const& id, QString const& text, QByteArray const& bytes, SheetPictures& pictures)
{
    return isStructuredName(id.toLower()) ? structuredSheet(id, text, bytes, pictures)
                                          : markdownSheet(id, text, bytes, pictures);
}

}

std::optional<Sheet> loadSheet(OpenFolder const& folder, SheetPictures& pictures, QByteArray const& name)
{
    auto const [id, isUtf8] = FileName::fromBytes(name);
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

    auto const read = folder.read(name, sheetSizeLimit + 1);
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
    auto entries = sheetEntries(*names, previous);
    if (!previous.isEmpty())
        findUnchanged(**open, entries);

    SheetPictures pictures(**open, decoder, previous);
    QList<Sheet> sheets;
    sheets.reserve(static_cast<qsizetype>(entries.size()));
    for (auto const& entry : entries) {
        if (entry.isUnchanged)
            sheets.append(reused(*entry.previous, pictures));
        else if (auto sheet = loadSheet(**open, pictures, entry.bytes))
            sheets.append(*std::move(sheet));
    }
    return sheets;
}

}
