#include "AppDelegate.h"

#include "settings/MainMenu.h"
#include "updates/views/UpdateSettingsView.h"

#include <utility>

namespace Quillory {

AppDelegate::AppDelegate(Services services)
    : m_services(std::move(services))
    , m_store(m_services.library, LibraryStore::RestoreFolder::yes)
    , m_hotKeyCenter(m_services.hotKeys, m_services.localKeyEvents, m_services.notifications)
    , m_shortcuts(m_services.shortcuts, m_hotKeyCenter, m_services.library.executor)
{
    if (m_services.makeUpdater)
        m_updates.emplace(
            m_services.makeUpdater, ReleaseVersionDisplay::ofApplication(), UpdateController::Process::ofThis());
}

void AppDelegate::applicationDidFinishLaunching()
{
    auto const& library = m_services.library;
    m_shortcuts.define(ShortcutName::toggleQuillory());
    m_shortcuts.define(ShortcutName::peekQuillory());
    m_panel = std::make_unique<ReaderPanel>(m_store,
        ReaderPanel::Services { library.defaults, library.workspace, m_services.screens, m_services.compositing,
            { .executor = library.executor,
                .clipboard = library.clipboard,
                .notifications = m_services.notifications,
                .announcements = library.announcements,
                .openSettings = [this] { showSettings(); },
                .quit = m_services.quit,
                .howToCall = m_services.howToCall },
            m_services.makePanelWindow });
    m_presentation.emplace(m_store,
        PresentationCoordinator::Services { m_shortcuts, library.workspace, m_services.session,
            m_services.modifierEvents, m_services.permission, m_services.keys, m_services.peekKeys, library.executor,
            m_services.statusBar, menuBarUpdates(), m_services.quit },
        *m_panel);
    bindPanel();
    m_sheetRequests.emplace(m_store, library.executor, [this] { m_presentation->open(); });
    m_takenShortcuts.emplace(TakenShortcuts::Services { m_shortcuts, m_store, library.workspace,
        m_services.notifications, m_services.inWords, m_services.log, m_services.desktopHotKeys });
    if (m_services.desktopHotKeys)
        m_desktopWishes.emplace(*m_services.desktopHotKeys, m_services.shortcuts, m_services.notifications);
    m_startTask = library.executor.post([this] { m_takenShortcuts->look(); }); // once the keys have been asked for
    m_startOffer.emplace(m_store, library.defaults, library.executor, m_services.autostart);
    if (!m_store.folder.value() && m_services.firstWindow == FirstWindow::readerWithoutFolder)
        m_presentation->open();
    m_requests = m_services.instance.observeRequests(
        [this](auto const& request, auto const& answer) { serve(request, answer); });
}

std::optional<MenuBarUpdates> AppDelegate::menuBarUpdates()
{
    if (!m_updates)
        return std::nullopt;
    return MenuBarUpdates {
        .updateAvailable = [this] { return m_updates->updateAvailable.value(); },
        .canCheckForUpdates = [this] { return m_updates->canCheckForUpdates.value(); },
        .checkForUpdates = [this] { m_updates->checkForUpdates(); },
        .observeUpdateAvailable =
            [this](std::function<void()> changed) {
                auto const notifier = std::make_shared<QPropertyNotifier>(
                    m_updates->updateAvailable.addNotifier(std::move(changed)));
                return Registration([notifier] { *notifier = {}; });
            },
    };
}

void AppDelegate::bindPanel()
{
    m_panel->onDismiss = [this] { m_presentation->close(); };
    m_panel->onMoved = [this] { m_presentation->windowDidMove(); };
    m_panel->onResized = [this] { m_presentation->windowDidResize(); };
    m_panel->onClosing = [this] { m_presentation->windowWillClose(); };
}

void AppDelegate::serve(ApplicationInstance::Request const& request, ApplicationInstance::Answer const& answer)
{
    using Wish = ApplicationInstance::Wish;
    if (request.wish != Wish::none)
        m_services.noteUserTime(request.userTime);
    switch (request.wish) {
    case Wish::none:
        return;
    case Wish::plainStart:
    case Wish::open:
        return applicationShouldHandleReopen();
    case Wish::toggle:
        return m_presentation->toggle();
    case Wish::peek:
        return m_presentation->peek(request.held);
    case Wish::peekEnd:
        return m_presentation->endRequestedPeek();
    case Wish::settings:
        return showSettings();
    case Wish::show:
        return m_sheetRequests->show(request.sheet, answer);
    }
}

void AppDelegate::applicationShouldHandleReopen()
{
    if (m_presentation)
        m_presentation->open();
}

std::function<QWidget*(QWidget*)> AppDelegate::updatesRows()
{
    if (!m_updates)
        return nullptr;
    return [this](QWidget* parent) { return new UpdateSettingsView(*m_updates, parent); };
}

void AppDelegate::showSettings()
{
    if (!m_settings) {
        auto const& library = m_services.library;
        m_settings = std::make_unique<SettingsWindow>(SettingsServices {
            .store = m_store,
            .recorder = { { m_shortcuts, m_hotKeyCenter, m_services.notifications, m_services.keyboardLayout,
                              m_services.systemShortcuts, m_services.inWords, mainMenu },
                m_services.keyStrokes, m_services.keys },
            .defaults = library.defaults,
            .workspace = library.workspace,
            .screens = m_services.screens,
            .executor = library.executor,
            .notifications = m_services.notifications,
            .fileOpener = library.fileOpener,
            .permission = m_services.permission,
            .desktopSettings = m_services.desktopSettings,
            .autostart = m_services.autostart,
            .desktopHotKeys = m_services.desktopHotKeys,
            .versionText = ReleaseVersionDisplay::ofApplication().versionText(),
            .applicationFile = m_services.applicationFile,
            .readerFrame = [this] { return m_panel->isVisible() ? std::optional(m_panel->frame()) : std::nullopt; },
            .makeUpdates = updatesRows(),
        });
    }
    m_presentation->stay();
    // Once a peek's level is taken back, which would put the reader over the window.
    m_settingsTask = m_services.library.executor.post([this] { m_settings->bringToFront(); });
}

void AppDelegate::applicationWillTerminate()
{
    m_store.shutdown();
}

}
