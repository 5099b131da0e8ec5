#include "library/LibraryStore.h"

#include "library/LibraryLoad.h"

#include <QCoreApplication>

#include <algorithm>

namespace Quillory {

namespace {

QString lastSheetKey()
{
    return QStringLiteral("lastSheet");
}

QString textSizeKey()
{
    return QStringLiteral("textSize");
}

double storedTextSize(UserDefaults const& defaults)
{
    auto const stored = defaults.get<double>(textSizeKey()).value_or(0);
    if (stored == 0)
        return LibraryStore::defaultTextSize;
    return std::clamp(stored, LibraryStore::minimumTextSize, LibraryStore::maximumTextSize);
}

QString translated(char const* text)
{
    return QCoreApplication::translate("Library", text);
}

// A sheet that could not be read keeps what was read of it last, if that was anything.
QList<Sheet> keepingLastReadable(QList<Sheet> loaded, QList<Sheet> const& current)
{
    for (auto& sheet : loaded) {
        if (!sheet.error)
            continue;
        auto const* const last = findSheet(current, sheet.id);
        if (!last || last->source.isEmpty())
            continue;
        auto kept = *last;
        kept.id = sheet.id;
        kept.error = sheet.error;
        sheet = std::move(kept);
    }
    return loaded;
}

}

LibraryStore::LibraryStore(Services services, RestoreFolder restore)
    : m_services(services)
    , m_access(services.defaults, services.bookmarks)
{
    selectedID = services.defaults.get<QString>(lastSheetKey());
    textSize = storedTextSize(services.defaults);
    if (restore == RestoreFolder::no)
        return;
    auto const restored = m_access.restore();
    if (!restored)
        message = translated("Folder access needs to be restored. Choose the folder again.");
    else if (*restored)
        connect(**restored);
}

void LibraryStore::connect(QString const& newFolder)
{
    if (m_watcher)
        m_watcher->stop();
    m_reloadTask.end();
    busy = false;
    generation = generation + 1;
    folder = newFolder;
    m_services.executor.discard(sheets.value());
    sheets = QList<Sheet>();
    if (pinsChanged)
        pinsChanged();
    message = std::nullopt;
    scrollPositions.clear();
    m_watcher.emplace(m_services.events, newFolder, [this] { reload(Debounced::yes); });
    reload();
}

void LibraryStore::reload(Debounced debounced)
{
    if (!folder.value())
        return;
    auto const loadGeneration = generation.value();
    auto const pause = debounced == Debounced::yes ? reloadDebounce : std::chrono::milliseconds::zero();
    m_reloadTask = m_services.executor.after(pause, [this, loadGeneration] { startLoad(loadGeneration); });
}

void LibraryStore::startLoad(int loadGeneration)
{
    busy = true;
    m_reloadTask = m_services.executor.detach(
        [&files = m_services.files, path = *folder.value(), previous = sheets.value()] {
            return loadLibrary(files, path, previous);
        },
        [this, loadGeneration](auto loaded) { finishLoad(std::move(loaded), loadGeneration); });
}

void LibraryStore::finishLoad(std::expected<QList<Sheet>, SystemError> loaded, int loadGeneration)
{
    if (loadGeneration != generation)
        return;
    if (loaded) {
        applyLoadedSheets(*std::move(loaded), loadGeneration);
        message = std::nullopt;
    } else {
        message = translated("Could not read the folder. Choose it again or refresh. ")
            + loaded.error().localizedDescription();
    }
    busy = false;
}

void LibraryStore::applyLoadedSheets(QList<Sheet> loaded, int loadGeneration)
{
    if (loadGeneration != generation)
        return;
    auto merged = keepingLastReadable(std::move(loaded), sheets.value());
    m_services.executor.discard(sheets.value());
    sheets = std::move(merged);

    if (!selectedID.value() || !selectedSheet()) {
        auto const& all = sheets.value();
        setSelectedID(all.isEmpty() ? std::nullopt : std::optional(all.first().id));
    }
    if (pinsChanged)
        pinsChanged();
}

void LibraryStore::select(QString const& id)
{
    setSelectedID(id);
}

void LibraryStore::selectAdjacent(int offset)
{
    auto const& all = sheets.value();
    if (all.isEmpty())
        return;
    auto const* const selected = selectedSheet();
    if (!selected)
        return select(all.first().id);
    auto const target = std::distance(all.constData(), selected) + offset;
    if (target >= 0 && target < all.size())
        select(all.at(target).id);
}

Sheet const* LibraryStore::selectedSheet() const
{
    auto const& id = selectedID.value();
    return id ? findSheet(sheets.value(), *id) : nullptr;
}

void LibraryStore::setSelectedID(std::optional<QString> const& id)
{
    selectedID = id;
    if (id)
        m_services.defaults.setValue(lastSheetKey(), *id);
    else
        m_services.defaults.removeValue(lastSheetKey());
}

void LibraryStore::shutdown()
{
    m_reloadTask.end();
    busy = false;
    if (m_watcher)
        m_watcher->stop();
    m_access.release();
}

}
