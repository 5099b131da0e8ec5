#pragma once

#include "input/ModifierGesture.h"
#include "library/FolderAccess.h"
#include "library/LibraryInstallation.h"
#include "library/LibrarySearch.h"
#include "library/LibraryWatcher.h"
#include "library/LoadMemory.h"
#include "library/Preferences.h"
#include "library/Sheet.h"
#include "library/SheetFiles.h"
#include "library/StoreProperty.h"
#include "platform/Announcements.h"
#include "platform/Clipboard.h"
#include "platform/Executor.h"
#include "platform/FileOpener.h"
#include "platform/FileSystem.h"
#include "platform/ModifierFlags.h"
#include "platform/OpenPanels.h"
#include "platform/Sandbox.h"
#include "platform/Workspace.h"

#include <QCoreApplication>
#include <QHash>
#include <QList>
#include <QPointF>
#include <QString>
#include <QStringList>

#include <chrono>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace Quillory {

class MessageBar;
class NativeReader;
class PresentationCoordinator;
class ReaderView;

// The one observable model: the connected folder, its sheets, the selection, what search and find are at, what the user
// should read, and the preferences. Every property can be observed; assigning an equal value tells nobody. Where another
// class assigns one as well, its type names that class.
// Main thread only.
class LibraryStore {
    Q_DECLARE_TR_FUNCTIONS(Library)
public:
    struct Services {
        UserDefaults& defaults;
        FolderBookmarks& bookmarks;
        FileSystem const& files; // must outlive the executor's workers, as must the sandbox
        Sandbox& sandbox;
        FileEvents& events;
        Executor& executor;
        Clipboard& clipboard;
        Announcements& announcements;
        FileOpener& fileOpener;
        OpenPanels& openPanels;
        Workspace& workspace;
        QString starters; // the folder that the program brings its starter sheets in
    };

    enum class RestoreFolder { no, yes };
    enum class Debounced { no, yes };
    enum class FindDirection { forwards, backwards };
    // What the user can do about what a message tells.
    enum class Remedy { none, chooseFolder, refreshOrChooseFolder };

    static constexpr std::chrono::milliseconds reloadDebounce { 150 };
    static constexpr std::chrono::milliseconds copyFeedbackTime = Clipboard::feedbackTime;

    LibraryStore(Services services, RestoreFolder restore);
    LibraryStore(LibraryStore const&) = delete;
    LibraryStore& operator=(LibraryStore const&) = delete;

    // Leaves the library at hand and starts the first load of another.
    void connect(QString const& folder);

    // Lets the user choose the folder in a dialog over a window of ours. Nothing while one is open, or when the window
    // is absent, hidden or has a dialog already. Without `panel` a new one is made.
    void chooseFolder(std::optional<std::uint64_t> window, std::unique_ptr<OpenPanel> panel = nullptr);

    // Reads the folder again: at once, or after a pause in which further calls add nothing. While a load runs, one more
    // follows it.
    void reload(Debounced debounced = Debounced::no);
    void refresh() { reload(); }
    // A load is about to start, when `busy` says it.
    bool isLoadDue() const { return m_reloadTask.isActive(); }

    // Takes over a finished load, unless the folder has changed since it was started.
    void applyLoadedSheets(QList<Sheet> loaded, int loadGeneration);

    // Copies the program's own sheets of these names into the folder, never over a file, and says in `message` what
    // became of each. Takes the place of an installation that still runs.
    void installStarters(QStringList names);

    void select(QString const& id);

    // Moves the selection by `offset` places, not past either end.
    void selectAdjacent(int offset);

    // Searches the library from now on for what is typed. The results stay as they were while texts are being folded.
    void setLibraryQuery(QString const& query);
    // Gets the search ready before the first key comes.
    void prepareLibrarySearch() { m_search.prepare(); }

    // Both work on the results of the library search, in a later turn when they are still to come: moves the selection
    // by `offset` results, to the first or the last one at the ends and from outside of them; or keeps the selection, or
    // selects the first result, and ends the search. False when there are no results, and nothing changes.
    bool selectAdjacentResult(int offset);
    bool acceptLibrarySearch();

    // What the program around the library has to say, and its end once that does not hold any more: then nothing happens
    // to another message.
    void showMessage(QString const& sentence) { say(sentence); }
    void withdrawMessage(QString const& sentence);

    // Asks for a move to the next or the previous match; a repeated request counts.
    void requestFind(FindDirection direction);

    // Puts the text on the clipboard, and says so. False, and untouched, in Learning Mode; false when it did not take.
    bool copy(QString const& text);

    void setLearningModeEnabled(bool isEnabled);
    void setModifierGesture(ModifierGesture gesture);
    void setTextSize(double size); // points
    void setKeyNames(KeyNames names);

    // Pins a loaded sheet of this folder, or takes its pin away.
    void togglePin(QString const& id);

    // Hand a sheet's file, the selected one's without an id, to other programs. Nothing when there is no such file.
    void openSheet(std::optional<QString> const& id = std::nullopt);
    // Of a web page, in the desktop's browser.
    void openLink(QString const& link);
    void revealSheet(std::optional<QString> const& id = std::nullopt);
    void openSheetWith(std::optional<QString> const& id, std::optional<std::uint64_t> window);

    // The selected sheet, null when there is none. Lives until the sheets change.
    Sheet const* selectedSheet() const;

    // The sheets of `pinnedIDs` in that order, those without a sheet left out.
    QList<Sheet> pinnedSheets() const;

    // Ends what runs and lets the folder go.
    void shutdown();

    StoreProperty<QList<Sheet>> sheets;
    StoreProperty<std::optional<QString>> selectedID;
    StoreProperty<std::optional<QString>> folder;
    StoreProperty<int> generation { 0 }; // raised at each connect: guards loads, installs and panels
    StoreProperty<std::optional<QString>, MessageBar> message;
    StoreProperty<Remedy> messageRemedy { Remedy::none }; // counts while there is a message
    StoreProperty<bool> busy { false };

    StoreProperty<QString> libraryQuery;
    StoreProperty<QStringList> libraryResults; // the ids of the sheets that hold the query, in order; all without one
    StoreProperty<bool, ReaderView> librarySearchVisible { false };
    StoreProperty<bool, ReaderView> findVisible { false };
    StoreProperty<QString, ReaderView> findQuery;
    StoreProperty<int> findRequest { 0 }; // raised at each request to move to a match
    StoreProperty<bool> findBackwards { false };
    StoreProperty<QString, NativeReader> findStatus;
    StoreProperty<QString> copyFeedback;

    StoreProperty<bool> learningModeEnabled { false };
    StoreProperty<ModifierGesture> modifierGesture { ModifierGesture::off };
    StoreProperty<double> textSize { Preferences::defaultTextSize };
    StoreProperty<KeyNames> keyNames { KeyNames::symbols }; // in structured sheets
    StoreProperty<bool, PresentationCoordinator> gesturePermissionGranted { false };
    StoreProperty<ModifierFlags, PresentationCoordinator> peekModifiers { ModifierFlags::none }; // of the running peek

    StoreProperty<QStringList> pinnedIDs;
    StoreProperty<std::shared_ptr<OpenPanel>> filePanel; // the one that is open, null when there is none
    QHash<QString, QPointF> scrollPositions; // by sheet id; NativeReader stores them

    // Set by PresentationCoordinator.
    std::function<void()> modifierGestureChanged;
    std::function<void()> pinsChanged;
    std::function<void()> filePickerWillPresent;

private:
    // Who put `message` there. A load that succeeds clears what a load said and nothing else.
    enum class Speaker { load, other };
    // A change that comes while a load runs may be missing from it.
    enum class Loading { none, running, runningAndOutdated };

    // A load of the folder as it is now, for a worker. The tokens are those of `LibraryLoad`.
    LibraryInstallation::Load loading(std::stop_token hurry, std::stop_token ended);
    void startLoad();
    void restartLoad();
    void finishLoad(std::expected<LoadedLibrary, SystemError> loaded, int loadGeneration);
    bool takeLoaded(std::expected<LoadedLibrary, SystemError> loaded, int loadGeneration);
    void stopLoading();
    void remember(LoadMemory memory);
    void restoreFolder();
    void say(QString const& sentence, Remedy remedy = Remedy::none, Speaker speaker = Speaker::other);
    void sayTrouble(UserDefaults::Trouble const& trouble);
    void finishInstallation(LibraryInstallation::Outcome outcome, int installGeneration);
    void setSheets(QList<Sheet> newSheets);
    void setSelectedID(std::optional<QString> const& id);
    void updateBusy();
    void updateResults();
    bool withResults(std::function<void()> action);
    std::optional<qsizetype> selectedResult() const;
    void clearCopyFeedbackLater();
    void tellPinsChanged() const;

    static OpenPanelSettings folderSettings();
    static OpenPanelSettings applicationSettings(QString const& folder, QString const& fileName);
    bool canPresent(std::optional<std::uint64_t> window) const;
    void present(std::shared_ptr<OpenPanel> const& panel, OpenPanelSettings const& settings, std::uint64_t window,
        std::function<void(QString const& chosen)> accepted);
    void takeFolder(QString const& chosen);
    std::optional<SheetFiles::File> fileOfSheet(std::optional<QString> const& id) const;

    Services m_services;
    Preferences m_preferences;
    FolderAccess m_access;
    SheetFiles m_sheetFiles;
    std::optional<LibraryWatcher> m_watcher;
    Registration m_reloadTask; // the wait for a load
    std::chrono::nanoseconds m_reloadDue {};
    Registration m_loadTask;
    Loading m_loading = Loading::none;
    std::stop_source m_hurry; // of the load that runs
    std::stop_source m_loadEnd;
    std::shared_ptr<LoadMemory const> m_loadMemory = std::make_shared<LoadMemory>(); // beside `sheets`
    LibrarySearch m_search;
    std::optional<std::vector<std::function<void()>>> m_resultActions; // present while results are to come
    Speaker m_speaker = Speaker::other;
    Registration m_installTask;
    std::list<Registration> m_copyFeedbackTasks;
    Registration m_troubleObservation;
};

}
