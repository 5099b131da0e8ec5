// The dialogs that the store opens and the files that it hands to other programs.

#include "library/LibraryStore.h"

#include <QCoreApplication>

namespace Quillory {

namespace {

QString translated(char const* text)
{
    return QCoreApplication::translate("Library", text);
}

OpenPanelSettings folderSettings()
{
    return {
        .canChooseDirectories = true,
        .canChooseFiles = false,
        .canCreateDirectories = true,
        .prompt = translated("Choose folder"),
        .message = translated("Choose a folder containing your cheat sheets."),
    };
}

OpenPanelSettings applicationSettings(QString const& folder, QString const& fileName)
{
    return {
        .allowedContentType = OpenPanelSettings::ContentType::application,
        .directoryURL = folder,
        .prompt = translated("Open"),
        .message = translated("Choose an application to open %1.").arg(fileName),
    };
}

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
        say(translated("Could not remember folder access: ") + remembered.error().localizedDescription());
        return;
    }
    connect(m_access.url().value_or(chosen));
}

std::optional<LibraryStore::SheetFile> LibraryStore::fileOfSheet(std::optional<QString> const& id) const
{
    auto const& wanted = id ? id : selectedID.value();
    if (!folder.value() || !wanted)
        return std::nullopt;
    auto const* const sheet = findSheet(sheets, *wanted);
    if (!sheet)
        return std::nullopt;
    auto const& base = *folder.value();
    auto const separator = base.endsWith(u'/') ? QString() : QStringLiteral("/");
    return SheetFile { sheet->id, base + separator + sheet->id };
}

// What is said of a failure when it comes in time, unless another folder is connected by then.
FileOpener::Done LibraryStore::reportingFailure(std::function<QString(FileOpener::Failure const&)> sentence)
{
    return [this, alive = std::weak_ptr(m_lifetime), started = generation.value(),
               deadline = m_services.executor.now() + launchAnswerTime,
               sentence = std::move(sentence)](std::expected<void, FileOpener::Failure> const& opened) {
        if (!opened && !alive.expired() && generation == started && m_services.executor.now() <= deadline)
            say(sentence(opened.error()));
    };
}

void LibraryStore::openSheet(std::optional<QString> const& id)
{
    auto const file = fileOfSheet(id);
    if (!file)
        return;
    m_services.fileOpener.open(file->path, reportingFailure([name = file->name](FileOpener::Failure const&) {
        return translated("Could not open %1 in its default application.").arg(name);
    }));
}

void LibraryStore::revealSheet(std::optional<QString> const& id)
{
    if (auto const file = fileOfSheet(id))
        m_services.fileOpener.reveal(file->path);
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
                launch(file, application);
        });
}

void LibraryStore::launch(SheetFile const& file, QString const& application)
{
    m_services.fileOpener.openWith(
        file.path, application, reportingFailure([name = file.name](FileOpener::Failure const& failure) {
            return translated("Could not open %1: ").arg(name) + failure.description;
        }));
}

}
