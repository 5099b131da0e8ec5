#pragma once

#include "library/FolderAccess.h"
#include "library/LibraryWatcher.h"
#include "library/Sheet.h"
#include "platform/Executor.h"
#include "platform/FileSystem.h"

#include <QHash>
#include <QList>
#include <QPointF>
#include <QProperty>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace Quillory {

// The one observable model: the connected folder, its sheets, the selection and what the user should read.
// Every property can be observed; assigning an equal value tells nobody. Main thread only.
class LibraryStore {
public:
    struct Services {
        UserDefaults& defaults;
        FolderBookmarks& bookmarks;
        FileSystem const& files; // must outlive the executor's workers
        FileEvents& events;
        Executor& executor;
    };

    enum class RestoreFolder { no, yes };
    enum class Debounced { no, yes };

    static constexpr std::chrono::milliseconds reloadDebounce { 150 };
    static constexpr double defaultTextSize = 16;
    static constexpr double minimumTextSize = 11;
    static constexpr double maximumTextSize = 32;

    LibraryStore(Services services, RestoreFolder restore);
    LibraryStore(LibraryStore const&) = delete;
    LibraryStore& operator=(LibraryStore const&) = delete;

    // Leaves the library at hand and starts the first load of another.
    void connect(QString const& folder);

    // Reads the folder again: at once, or after a pause in which a further call takes this one's place.
    void reload(Debounced debounced = Debounced::no);
    void refresh() { reload(); }

    // Takes over a finished load, unless the folder has changed since it was started.
    void applyLoadedSheets(QList<Sheet> loaded, int loadGeneration);

    void select(QString const& id);

    // Moves the selection by `offset` places, not past either end.
    void selectAdjacent(int offset);

    // The selected sheet, null when there is none. Lives until the sheets change.
    Sheet const* selectedSheet() const;

    // Ends what runs and lets the folder go.
    void shutdown();

    QProperty<QList<Sheet>> sheets;
    QProperty<std::optional<QString>> selectedID;
    QProperty<std::optional<QString>> folder;
    QProperty<int> generation { 0 };
    QProperty<std::optional<QString>> message;
    QProperty<bool> busy { false };
    QProperty<double> textSize { defaultTextSize };
    QHash<QString, QPointF> scrollPositions; // by sheet id
    std::function<void()> pinsChanged;

private:
    void startLoad(int loadGeneration);
    void finishLoad(std::expected<QList<Sheet>, SystemError> loaded, int loadGeneration);
    void setSelectedID(std::optional<QString> const& id);

    Services m_services;
    FolderAccess m_access;
    std::optional<LibraryWatcher> m_watcher;
    Registration m_reloadTask;
};

}
