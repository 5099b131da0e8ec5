#include "AppDelegate.h"

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
    else if (request.wish == Wish::open)
        applicationShouldHandleReopen();
}

void AppDelegate::applicationShouldHandleReopen()
{
    if (m_presentation)
        m_presentation->open();
}

void AppDelegate::applicationWillTerminate()
{
    m_store.shutdown();
}

}
