#include "AppDelegate.h"

namespace Quillory {

AppDelegate::AppDelegate(LibraryStore::Services services, HotKeys& hotKeys, Workspace& workspace)
    : m_store(services, LibraryStore::RestoreFolder::yes)
    , m_shortcuts(services.defaults, hotKeys)
    , m_workspace(workspace)
{
}

void AppDelegate::applicationDidFinishLaunching()
{
    m_panel = std::make_unique<ReaderPanel>(m_store, m_workspace);
    m_presentation.emplace(m_store, m_shortcuts, m_workspace, *m_panel);
    m_panel->onDismiss = [this] { m_presentation->close(); };
    m_panel->onClosed = [this] { m_presentation->windowWillClose(); };
    if (!m_store.folder.value())
        m_presentation->open();
}

void AppDelegate::applicationWillTerminate()
{
    m_store.shutdown();
}

}
