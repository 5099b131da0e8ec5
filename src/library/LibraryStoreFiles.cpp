// The file panels of the store, and the files that it hands to other programs.

#include "library/LibraryStore.h"

namespace Quillory {

OpenPanelSettings LibraryStore::folderSettings()
{
    return {
        .canChooseDirectories = true,
        .canChooseFiles = false,
        .canCreateDirectories = true,
        .prompt = tr("Choose folder"),
        .message = tr("Choose a folder containing your cheat sheets."),
    };
}

OpenPanelSettings LibraryStore::applicationSettings(QString const& folder, QString const& fileName)
{
    return {
        .allowedContentType = OpenPanelSettings::ContentType::application,
        .directoryURL = folder,
        .prompt = tr("Open"),
        .message = tr("Choose an application to open %1.").arg(fileName),
    };
}

bool LibraryStore::canPresent(std::optional<std::uint64_t> window) const
{
    return window && !filePanel.value() && m_services.openPanels.canAttachTo(*window);
}

void LibraryStore::present(std::shared_ptr<OpenPanel> const& panel, OpenPanelSettings const& settings,
    std::uint64_t window, std::function<void(QString const& chosen)> accepted)
{
    filePanel.setValue(panel);
    if (filePickerWillPresent)
        filePickerWillPresent();
    m_services.workspace.activateIgnoringOtherApps(window);
    panel->beginSheetModal(window, settings, [this, accepted = std::move(accepted)](OpenPanel::Response response) {
        auto const ended = filePanel.value(); // keeps it to the end of this call
        auto const then = accepted;           // and this with it
        ended->orderOut();
        filePanel.setValue(nullptr);
        auto const chosen = ended->url();
        if (response == OpenPanel::Response::ok && chosen)
            then(*chosen);
        if (auto const failure = ended->failure(); !failure.isEmpty())
            say(tr("Could not open the file dialog: %1").arg(failure));
    });
}

void LibraryStore::chooseFolder(std::optional<std::uint64_t> window, std::unique_ptr<OpenPanel> panel)
{
    if (!canPresent(window))
        return;
    if (!panel)
        panel = m_services.openPanels.openPanel();
    present(std::move(panel), folderSettings(), *window, [this](QString const& chosen) { takeFolder(chosen); });
}

void LibraryStore::takeFolder(QString const& chosen)
{
    if (auto const remembered = m_access.remember(chosen); !remembered) {
        say(tr("Could not remember folder access: %1").arg(remembered.error().localizedDescription()),
            Remedy::chooseFolder);
        return;
    }
    connect(m_access.url().value_or(chosen));
}

std::optional<SheetFiles::File> LibraryStore::fileOfSheet(std::optional<QString> const& id) const
{
    auto const& wanted = id ? id : selectedID.value();
    if (!folder.value() || !wanted)
        return std::nullopt;
    auto const* const sheet = findSheet(sheets, *wanted);
    if (!sheet)
        return std::nullopt;
    return SheetFiles::in(*folder.value(), sheet->id);
}

void LibraryStore::openSheet(std::optional<QString> const& id)
{
    if (auto const file = fileOfSheet(id))
        m_sheetFiles.open(*file);
}

void LibraryStore::openLink(QString const& link)
{
    m_sheetFiles.openLink(link);
}

void LibraryStore::revealSheet(std::optional<QString> const& id)
{
    if (auto const file = fileOfSheet(id))
        m_sheetFiles.reveal(*file);
}

void LibraryStore::openSheetWith(std::optional<QString> const& id, std::optional<std::uint64_t> window)
{
    auto const file = fileOfSheet(id);
    if (!file || !canPresent(window))
        return;
    auto const settings = applicationSettings(m_services.openPanels.applicationsFolder(), file->name);
    present(m_services.openPanels.openPanel(), settings, *window,
        [this, id, file = *file, started = generation.value()](QString const& application) {
            if (generation == started && fileOfSheet(id) == file)
                m_sheetFiles.openWith(file, application);
        });
}

}
