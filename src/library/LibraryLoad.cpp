#include "library/LibraryLoad.h"

#include "library/Arrivals.h"
#include "library/ForeignBytes.h"
#include "library/LibraryError.h"
#include "library/LibraryReference.h"
#include "library/OrderedBudget.h"
#include "platform/InProcessSandbox.h"
#include "text/FileNames.h"
#include "text/StrictUtf8.h"
#include "text/TextOrder.h"

#include <QCoreApplication>
#include <QHash>

#include <algorithm>
#include <atomic>
#include <future>
#include <utility>
#include <vector>

namespace Quillory {

namespace {

struct Entry {
    QByteArray bytes;
    QString name;
    bool isUtf8 = true;
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
            entries.push_back({ bytes, name, isUtf8, lowered, isUtf8 ? known.value(name) : nullptr });
    }
    std::ranges::sort(entries, comesBefore);
    return entries;
}

Sheet errorSheet(QString const& id, QString const& error)
{
    return { .id = id, .title = pathStem(id).toString(), .error = error };
}

Sheet structuredSheet(QString const& id, QString const& text, QByteArray const& bytes)
{
    auto const document = ShortcutSheet::decode(bytes);
    if (!document)
        return errorSheet(id, document.error().description());
    return { .id = id, .title = document->title, .source = text, .shortcuts = *document };
}

// Until its tree is there.
Sheet markdownSheet(QString const& id, QString const& text, Interpretation interpretation)
{
    return { .id = id,
        .title = pathStem(id).toString(),
        .source = text,
        .error = description(interpretation),
        .parsed = ParsedMarkdown::asCode(text),
        .interpretation = interpretation };
}

// The sheet that was made of the same text before, also when a later read failed. The files that it refers to
// may have changed all the same.
Sheet reused(Sheet const& previous)
{
    auto sheet = previous;
    sheet.error = description(sheet.interpretation);
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
void findUnchanged(OpenFolder const& folder, std::vector<Entry>& entries, std::stop_token const& ended)
{
    constexpr std::size_t batch = 16; // files
    std::atomic<std::size_t> next = 0;
    auto const look = [&] {
        for (auto start = next.fetch_add(batch); start < entries.size() && !ended.stop_requested();
            start = next.fetch_add(batch)) {
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

// One load: what is made of each entry, in the order of the entries.
class Loading {
public:
    Loading(LibraryLoad const& load, OpenFolder const& folder, std::vector<Entry> entries)
        : m_load(load)
        , m_folder(folder)
        , m_entries(std::move(entries))
        , m_places(m_entries.size())
        , m_budget(load.trees, [this](std::size_t index) { letGo(index); })
    {
    }

    LoadedLibrary run()
    {
        for (std::size_t index = 0; index < m_entries.size() && !m_load.ended.stop_requested(); ++index)
            begin(index);
        while (m_fresh > 0 && takeNext(m_load.ended)) { }
        // What has been under way for longer is waited for only when there is nothing else to show.
        while (!m_hasStarted && takeNext(m_load.hurry)) { }
        preparePictures();
        LoadedLibrary loaded;
        loaded.sheets.reserve(static_cast<qsizetype>(m_places.size()));
        for (auto& place : m_places) {
            if (!place.sheet)
                continue;
            if (place.job)
                loaded.memory.sheets.insert(place.sheet->id, place.job);
            loaded.sheets.append(*std::move(place.sheet));
        }
        m_pictures.remember(loaded.memory);
        return loaded;
    }

private:
    // What an entry came to. Absent for what is no regular file.
    struct Place {
        std::optional<Sheet> sheet;
        std::shared_ptr<SandboxJob> job; // while its tree is not there
        bool isFresh = false; // the job was started by this load
    };

    // Of sheets that wait for a worker.
    static constexpr qint64 mostBytesUnderWay = qint64 { 256 } << 20U;

    void begin(std::size_t index)
    {
        auto const& entry = m_entries[index];
        if (!entry.isUnchanged)
            return loadSheet(index);
        auto& sheet = m_places[index].sheet.emplace(reused(*entry.previous));
        if (sheet.interpretation != Interpretation::underWay)
            return charge(index);
        if (auto const job = m_load.earlier->sheets.value(sheet.id))
            expect(index, job);
        else
            loadSheet(index);
    }

    void loadSheet(std::size_t index)
    {
        auto const& entry = m_entries[index];
        auto& sheet = m_places[index].sheet;
        auto const status = m_folder.status(entry.bytes);
        sheet.reset();
        if (!status)
            sheet = errorSheet(entry.name, status.error().localizedDescription());
        else if (!status->isRegularFile || status->isSymbolicLink)
            return;
        else if (!entry.isUtf8)
            sheet = errorSheet(entry.name,
                QCoreApplication::translate(
                    "Library", "The name of this file is not valid UTF-8. Give it a new name."));
        else if (status->size > sheetSizeLimit)
            sheet = errorSheet(entry.name, description(LibraryError::tooLarge));
        else if (!m_budget.admits(index))
            sheet = errorSheet(entry.name, description(LibraryError::overBudget));
        else if (m_bytesUnderWay > mostBytesUnderWay) // the next load reads it
            sheet = errorSheet(entry.name, *description(Interpretation::underWay));
        else
            readContents(index);
    }

    void readContents(std::size_t index)
    {
        auto const& entry = m_entries[index];
        auto& sheet = m_places[index].sheet;
        auto const bytes = m_folder.read(entry.bytes, sheetSizeLimit + 1);
        if (!bytes) {
            sheet = errorSheet(entry.name, bytes.error().localizedDescription());
            return;
        }
        if (!*bytes)
            return;
        if ((*bytes)->size() > sheetSizeLimit) {
            sheet = errorSheet(entry.name, description(LibraryError::tooLarge));
            return;
        }
        auto text = decodeStrictUtf8(**bytes);
        if (!text) {
            sheet = errorSheet(entry.name, description(LibraryError::encoding));
            return;
        }
        text->squeeze();
        if (isStructuredName(entry.lowered)) {
            sheet = structuredSheet(entry.name, *text, **bytes);
            return charge(index);
        }
        sheet = markdownSheet(entry.name, *text, Interpretation::underWay);
        auto const known = m_load.earlier->sheets.value(entry.name);
        auto const isKnown = known && known->request().bytes == **bytes;
        if (isKnown)
            return expect(index, known);
        m_hasStarted = m_places[index].isFresh = true;
        ++m_fresh;
        expect(index, m_load.sandbox.start(ForeignBytes::markdown(**bytes)));
    }

    void expect(std::size_t index, std::shared_ptr<SandboxJob> const& job)
    {
        m_places[index].job = job;
        ++m_underWay;
        m_bytesUnderWay += job->request().bytes.size();
        m_arrivals.expect(*job, index);
        while (m_bytesUnderWay > mostBytesUnderWay && takeNext(m_load.ended)) { }
    }

    bool takeNext(std::stop_token const& ended)
    {
        auto const index = m_underWay > 0 ? m_arrivals.next(m_until, ended) : std::nullopt;
        if (index)
            finish(*index);
        return index.has_value();
    }

    void finish(std::size_t index)
    {
        --m_underWay;
        m_fresh -= m_places[index].isFresh ? 1U : 0U;
        auto const job = std::exchange(m_places[index].job, nullptr);
        if (!job)
            return; // it no longer fits
        m_bytesUnderWay -= job->request().bytes.size();
        auto& sheet = *m_places[index].sheet;
        auto const answer = *job->answer();
        if (answer) {
            sheet.parsed = *std::static_pointer_cast<ParsedMarkdown const>(*answer);
            sheet.title = sheet.parsed->firstHeadingTitle().value_or(sheet.title);
            sheet.interpretation = Interpretation::complete;
            sheet.error.reset();
        } else if (answer.error() == SandboxFailure::unavailable) {
            sheet = errorSheet(sheet.id, description(LibraryError::noSandbox));
            return;
        } else {
            sheet = markdownSheet(sheet.id, sheet.source,
                answer.error() == SandboxFailure::tookTooLong ? Interpretation::tookTooLong : Interpretation::crashed);
        }
        charge(index);
    }

    void charge(std::size_t index)
    {
        auto const& sheet = *m_places[index].sheet;
        if (!sheet.error || sheet.parsed)
            m_budget.charge(index,
                sheet.parsed ? sheet.parsed->byteSize()
                             : static_cast<std::uint64_t>(sheet.source.size()) * sizeof(QChar));
    }

    void letGo(std::size_t index)
    {
        auto const& id = m_entries[index].name;
        auto& place = m_places[index];
        place.sheet = errorSheet(id, description(LibraryError::overBudget));
        if (auto const job = std::exchange(place.job, nullptr))
            m_bytesUnderWay -= job->request().bytes.size();
    }

    void preparePictures()
    {
        auto const until = m_until + m_load.patience / 2;
        for (auto const& place : m_places) {
            if (place.sheet)
                m_pictures.askFor(*place.sheet, until, m_load.ended);
        }
        m_pictures.waitForFresh(until, m_load.ended);
        if (!m_hasStarted && !m_pictures.hasStarted())
            m_pictures.wait(until, m_load.hurry);
        for (auto& place : m_places) {
            if (place.sheet && place.sheet->parsed) {
                place.sheet->images = m_pictures.prepareMarkdownImages(*place.sheet->parsed);
            } else if (place.sheet && place.sheet->shortcuts) {
                auto icons = m_pictures.prepareIcons(*place.sheet->shortcuts);
                place.sheet->images = std::move(icons.images);
                place.sheet->iconWarnings = std::move(icons.warnings);
            }
        }
    }

    LibraryLoad const& m_load;
    OpenFolder const& m_folder;
    std::vector<Entry> m_entries;
    std::vector<Place> m_places;
    OrderedBudget m_budget;
    Arrivals m_arrivals;
    Arrivals::Time m_until = std::chrono::steady_clock::now() + m_load.patience;
    SheetPictures m_pictures { m_folder, m_load.sandbox, m_load.previous, *m_load.earlier, m_load.pictures };
    std::size_t m_underWay = 0; // jobs, of which so many are fresh
    std::size_t m_fresh = 0;
    bool m_hasStarted = false; // a job
    qint64 m_bytesUnderWay = 0;
};

}

std::expected<LoadedLibrary, SystemError> LibraryLoad::run() const
{
    auto const open = files.openFolder(folder);
    if (!open)
        return std::unexpected(open.error());
    auto const names = (*open)->names();
    if (!names)
        return std::unexpected(names.error());
    auto entries = sheetEntries(*names, previous);
    if (!previous.isEmpty())
        findUnchanged(**open, entries, ended);
    auto loaded = Loading(*this, **open, std::move(entries)).run();
    loaded.pictureFolders = referencedFolders(loaded.sheets);
    return loaded;
}

std::expected<QList<Sheet>, SystemError> loadLibrary(
    FileSystem const& files, PictureDecoder const& decoder, QString const& folder, QList<Sheet> const& previous)
{
    InProcessSandbox sandbox(ForeignBytes::interpreter(decoder));
    auto loaded = LibraryLoad { .files = files, .sandbox = sandbox, .folder = folder, .previous = previous }.run();
    if (!loaded)
        return std::unexpected(loaded.error());
    return std::move(loaded->sheets);
}

}
