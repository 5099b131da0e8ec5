#include "AppDelegate.h"

#include "settings/MainMenu.h"

#include <utility>

namespace Quillory {

AppDelegate::AppDelegate(Services services)
    : m_services(std::move(services))
    , m_store(m_services.library, LibraryStore::RestoreFolder::yes)
    , m_shortcutStorage(m_services.library.defaults, m_services.notifications)
    , m_hotKeyCenter(m_services.hotKeys, m_services.localKeyEvents, m_services.notifications)
    , m_shortcuts(m_shortcutStorage, m_hotKeyCenter, m_services.library.executor)
{
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
            m_services.modifierEvents, m_services.permission, m_services.keys, library.executor, m_statusBar,
            std::nullopt, m_services.quit },
        *m_panel);
    bindPanel();
    m_takenShortcuts.emplace(TakenShortcuts::Services {
        m_shortcuts, m_store, library.workspace, m_services.notifications, m_services.inWords, m_services.log });
    m_startTask = library.executor.post([this] { m_takenShortcuts->look(); }); // once the keys have been asked for
    if (!m_store.folder.value())
        m_presentation->open();
    m_requests = m_services.instance.observeRequests([this](auto const& request) { serve(request); });
}

void AppDelegate::bindPanel()
{
    m_panel->onDismiss = [this] { m_presentation->close(); };
    m_panel->onMoved = [this] { m_presentation->windowDidMove(); };
    m_panel->onResized = [this] { m_presentation->windowDidResize(); };
    m_panel->onClosing = [this] { m_presentation->windowWillClose(); };
}

void AppDelegate::serve(ApplicationInstance::Request const& request)
{
    using Wish = ApplicationInstance::Wish;
    if (request.wish != Wish::none)
        m_services.noteUserTime(request.userTime);
    if (request.wish == Wish::toggle)
        m_presentation->toggle();
    else if (request.wish == Wish::settings)
        showSettings();
    else if (request.wish == Wish::open)
        applicationShouldHandleReopen();
}

void AppDelegate::applicationShouldHandleReopen()
{
    if (m_presentation)
        m_presentation->open();
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
            .version = m_services.version,
            .applicationFile = m_services.applicationFile,
            .readerFrame = [this] { return m_panel->isVisible() ? std::optional(m_panel->geometry()) : std::nullopt; },
        });
    }
    m_presentation->stay();
    m_settings->bringToFront();
}

void AppDelegate::applicationWillTerminate()
{
    m_store.shutdown();
}

}
