// The installation of starter sheets.

#include "library/LibraryStore.h"

#include "library/LibraryInstallation.h"
#include "library/StarterSheets.h"
#include "text/TextOrder.h"

#include <algorithm>

namespace Quillory {

void LibraryStore::installStarters(QStringList names)
{
    if (!folder.value())
        return;
    m_installTask.end();
    auto const installGeneration = generation.value();
    std::ranges::sort(names, [](auto const& a, auto const& b) { return compareText(a, b) < 0; });
    LibraryInstallation installation { .folder = *folder.value(), .starters = m_services.starters };
    for (auto const& name : names)
        installation.targets.append(StarterSheets::targetName(name));

    std::stop_source cancellation;
    auto task = m_services.executor.detach(
        [&files = m_services.files, installation = std::move(installation),
            load = loading({}, cancellation.get_token()),
            cancelled = cancellation.get_token()] { return installation.run(files, load, cancelled); },
        [this, installGeneration](
            LibraryInstallation::Outcome outcome) { finishInstallation(std::move(outcome), installGeneration); });
    m_installTask = Registration([cancellation, task = std::move(task)]() mutable {
        cancellation.request_stop();
        task.end();
    });
    updateBusy();
}

void LibraryStore::finishInstallation(LibraryInstallation::Outcome outcome, int installGeneration)
{
    if (installGeneration != generation)
        return;
    if (outcome.library) {
        remember(std::move(outcome.library->memory));
        applyLoadedSheets(std::move(outcome.library->sheets), installGeneration);
    }
    if (installGeneration != generation)
        return; // an observer has connected another folder
    say(outcome.message());
    m_installTask.end();
    updateBusy();
    // One that runs was begun before this one's own look at the folder, and would bring the older list back.
    if (outcome.library && m_loading != Loading::none)
        restartLoad();
    else if (m_loadMemory->isUnderWay())
        startLoad();
    if (m_watcher && outcome.library)
        m_watcher->follow(outcome.library->pictureFolders);
}

}
