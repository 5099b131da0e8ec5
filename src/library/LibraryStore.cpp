#include "library/LibraryStore.h"

#include "library/LibraryError.h"
#include "library/LibraryLoad.h"
#include "text/HiddenCharacters.h"
#include "text/TextOrder.h"

#include <algorithm>

namespace Quillory {

namespace {

bool standsAsCode(Sheet const& sheet)
{
    using enum Interpretation;
    return sheet.interpretation == tookTooLong || sheet.interpretation == crashed;
}

// A sheet that could not be read keeps what was read of it last, if that was anything.
void keepLastReadable(QList<Sheet>& loaded, QList<Sheet> const& current)
{
    QHash<QString, Sheet const*> known; // made only where it is needed
    // NOLINTNEXTLINE(modernize-loop-convert): a range of references would copy a list that nothing is changed in
    for (qsizetype index = 0; index < loaded.size(); ++index) {
        // A text that could not be interpreted is shown in its place all the same.
        if (auto const& sheet = loaded.at(index); !sheet.error || standsAsCode(sheet))
            continue;
        if (known.isEmpty()) {
            for (auto const& sheet : current)
                known.insert(sheet.id, &sheet);
        }
        auto const id = loaded.at(index).id;
        auto const* last = known.value(id);
        if (!last)
            last = findSheet(current, id);
        auto const isUnderWay = loaded.at(index).interpretation == Interpretation::underWay;
        if (!last || last->source.isEmpty() || (isUnderWay && last->interpretation != Interpretation::complete))
            continue;
        auto kept = *last;
        kept.id = id;
        kept.error = loaded.at(index).error;
        loaded[index] = std::move(kept);
    }
}

}

LibraryStore::LibraryStore(Services services, RestoreFolder restore)
    : m_services(services)
    , m_preferences(services.defaults)
    , m_access(services.defaults, services.bookmarks)
    , m_sheetFiles(services.fileOpener, services.executor, [this](QString const& sentence) { say(sentence); })
    , m_search(services.executor, [this] { updateResults(); })
{
    modifierGesture.setValue(m_preferences.modifierGesture());
    learningModeEnabled.setValue(m_preferences.learningModeEnabled());
    selectedID.setValue(m_preferences.lastSheet());
    textSize.setValue(m_preferences.textSize());
    keyNames.setValue(m_preferences.keyNames());
    if (restore == RestoreFolder::yes)
        restoreFolder();
    m_troubleObservation = services.defaults.observeTrouble([this](auto const& trouble) { sayTrouble(trouble); });
}

void LibraryStore::restoreFolder()
{
    auto const restored = m_access.restore();
    if (!restored)
        say(tr("Folder access needs to be restored. Choose the folder again."), Remedy::chooseFolder);
    else if (*restored)
        connect(**restored);
}

void LibraryStore::say(QString const& sentence, Remedy remedy, Speaker speaker)
{
    m_speaker = speaker;
    messageRemedy.setValue(remedy);
    message.setValue(sentence);
}

void LibraryStore::withdrawMessage(QString const& sentence)
{
    if (message.value() == sentence)
        message.setValue(std::nullopt);
}

void LibraryStore::sayTrouble(UserDefaults::Trouble const& trouble)
{
    using enum UserDefaults::Trouble::Kind;
    switch (trouble.kind) {
    case setAside:
        return say(tr("The settings file was damaged and has been set aside as %1.").arg(trouble.file));
    case unreadable:
        return say(tr("The settings could not be read from %1: %2").arg(trouble.file, trouble.description));
    case unwritable:
        return say(tr("The settings could not be written to %1: %2").arg(trouble.file, trouble.description));
    }
}

void LibraryStore::connect(QString const& newFolder)
{
    if (m_watcher)
        m_watcher->stop();
    stopLoading();
    m_sheetFiles.forget();
    generation.setValue(generation + 1);
    folder.setValue(newFolder);
    m_search.forget();
    setSheets({});
    pinnedIDs.setValue(m_preferences.pins(newFolder));
    tellPinsChanged();
    message.setValue(std::nullopt);
    scrollPositions.clear();
    m_watcher.emplace(m_services.events, newFolder, [this] { reload(Debounced::yes); });
    reload();
}

void LibraryStore::reload(Debounced debounced)
{
    if (!folder.value())
        return;
    auto const pause = debounced == Debounced::yes ? reloadDebounce : std::chrono::milliseconds::zero();
    auto const due = m_services.executor.now() + pause;
    if (debounced == Debounced::yes)
        m_services.sandbox.prepare(); // for what was saved
    // The earlier one stays: what is written without pause must not put the load off without end.
    if (m_reloadTask.isActive() && m_reloadDue <= due)
        return;
    m_reloadDue = due;
    m_reloadTask = m_services.executor.after(pause, [this] { startLoad(); });
}

void LibraryStore::stopLoading()
{
    m_reloadTask.end();
    m_hurry.request_stop();
    m_loadEnd.request_stop();
    m_loadTask.end();
    m_loading = Loading::none;
    m_installTask.end();
    remember({});
    updateBusy();
}

// Jobs that nobody remembers end.
void LibraryStore::remember(LoadMemory memory)
{
    m_services.executor.discard(std::exchange(m_loadMemory, std::make_shared<LoadMemory>(std::move(memory))));
}

void LibraryStore::updateBusy()
{
    busy.setValue(m_loading != Loading::none || m_installTask.isActive());
}

LibraryInstallation::Load LibraryStore::loading(std::stop_token hurry, std::stop_token ended)
{
    return [load = LibraryLoad { .files = m_services.files,
                .sandbox = m_services.sandbox,
                .folder = *folder.value(),
                .previous = sheets.value(),
                .earlier = m_loadMemory,
                .hurry = std::move(hurry),
                .ended = std::move(ended) }] { return load.run(); };
}

void LibraryStore::startLoad()
{
    m_reloadTask.end();
    if (m_loading != Loading::none) {
        m_loading = Loading::runningAndOutdated;
        m_hurry.request_stop();
        return;
    }
    m_loading = Loading::running;
    updateBusy();
    m_hurry = std::stop_source();
    m_loadEnd = std::stop_source();
    m_loadTask = m_services.executor.detach(loading(m_hurry.get_token(), m_loadEnd.get_token()),
        [this, loadGeneration = generation.value()](auto loaded) { finishLoad(std::move(loaded), loadGeneration); });
}

void LibraryStore::restartLoad()
{
    m_loadEnd.request_stop();
    m_loadTask.end();
    m_loading = Loading::none;
    startLoad();
}

void LibraryStore::finishLoad(std::expected<LoadedLibrary, SystemError> loaded, int loadGeneration)
{
    auto const wasOutdated = std::exchange(m_loading, Loading::none) == Loading::runningAndOutdated;
    if (!takeLoaded(std::move(loaded), loadGeneration))
        return;
    if (wasOutdated || m_loadMemory->isUnderWay())
        startLoad();
    else
        updateBusy();
}

// False when an observer has connected another folder meanwhile.
bool LibraryStore::takeLoaded(std::expected<LoadedLibrary, SystemError> loaded, int loadGeneration)
{
    if (!loaded) {
        say(descriptionOfUnreadableFolder(loaded.error()), Remedy::refreshOrChooseFolder, Speaker::load);
        return true;
    }
    remember(std::move(loaded->memory));
    applyLoadedSheets(std::move(loaded->sheets), loadGeneration);
    if (loadGeneration != generation)
        return false;
    if (m_speaker == Speaker::load)
        message.setValue(std::nullopt);
    if (m_watcher)
        m_watcher->follow(loaded->pictureFolders);
    return true;
}

void LibraryStore::applyLoadedSheets(QList<Sheet> loaded, int loadGeneration)
{
    if (loadGeneration != generation)
        return;
    keepLastReadable(loaded, sheets);
    setSheets(std::move(loaded));
    if (!selectedID.value() || !selectedSheet()) {
        auto const& all = sheets.value();
        setSelectedID(all.isEmpty() ? std::nullopt : std::optional(all.first().id));
    }
    tellPinsChanged();
}

void LibraryStore::setSheets(QList<Sheet> newSheets)
{
    auto old = sheets.value();
    if (newSheets == old)
        sheets.setValueBypassingBindings(std::move(newSheets)); // equal ids can differ in their normal form
    else
        sheets.setValue(std::move(newSheets));
    m_services.executor.discard(std::move(old));
    m_search.setSheets(sheets);
    updateResults();
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

void LibraryStore::requestFind(FindDirection direction)
{
    findBackwards.setValue(direction == FindDirection::backwards);
    findRequest.setValue(findRequest + 1);
}

bool LibraryStore::copy(QString const& text)
{
    if (learningModeEnabled)
        return false;
    if (!m_services.clipboard.setText(Clipboard::Pasteboard::general, text)) {
        copyFeedback.setValue(tr("Copy failed"));
        return false;
    }
    auto const copied = hasHiddenCharacters(text) ? tr("Copied, with hidden characters") : tr("Copied");
    copyFeedback.setValue(copied);
    m_services.announcements.announce(copied, Announcements::Priority::medium);
    clearCopyFeedbackLater();
    return true;
}

void LibraryStore::clearCopyFeedbackLater()
{
    auto const task = m_copyFeedbackTasks.emplace(m_copyFeedbackTasks.end());
    *task = m_services.executor.after(copyFeedbackTime, [this, task] {
        auto const ended = std::move(*task);
        m_copyFeedbackTasks.erase(task);
        copyFeedback.setValue(QString());
    });
}

void LibraryStore::setLearningModeEnabled(bool isEnabled)
{
    if (isEnabled == learningModeEnabled)
        return;
    learningModeEnabled.setValue(isEnabled);
    m_preferences.setLearningModeEnabled(isEnabled);
    copyFeedback.setValue(QString());
}

void LibraryStore::setModifierGesture(ModifierGesture gesture)
{
    modifierGesture.setValue(gesture);
    m_preferences.setModifierGesture(gesture);
    if (modifierGestureChanged)
        modifierGestureChanged();
}

void LibraryStore::setTextSize(double size)
{
    textSize.setValue(size);
    m_preferences.setTextSize(size);
}

void LibraryStore::setKeyNames(KeyNames names)
{
    m_preferences.setKeyNames(names);
    keyNames.setValue(names);
}

void LibraryStore::togglePin(QString const& id)
{
    if (!folder.value())
        return;
    auto pins = pinnedIDs.value();
    if (pins.removeIf([&](QString const& pin) { return canonicallyEqual(pin, id); }) == 0) {
        if (!findSheet(sheets, id))
            return;
        pins.append(id);
    }
    pinnedIDs.setValue(pins);
    m_preferences.setPins(*folder.value(), pins);
    tellPinsChanged();
}

void LibraryStore::tellPinsChanged() const
{
    if (pinsChanged)
        pinsChanged();
}

Sheet const* LibraryStore::selectedSheet() const
{
    auto const& id = selectedID.value();
    return id ? findSheet(sheets, *id) : nullptr;
}

QList<Sheet> LibraryStore::pinnedSheets() const
{
    QList<Sheet> pinned;
    for (auto const& id : pinnedIDs.value()) {
        if (auto const* const sheet = findSheet(sheets, id))
            pinned.append(*sheet);
    }
    return pinned;
}

void LibraryStore::setSelectedID(std::optional<QString> const& id)
{
    selectedID.setValue(id);
    m_preferences.setLastSheet(id);
}

void LibraryStore::shutdown()
{
    if (auto const panel = filePanel.value())
        panel->cancel();
    stopLoading();
    m_search.forget();
    if (m_watcher)
        m_watcher->stop();
    m_access.release();
}

}
