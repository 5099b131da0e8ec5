#include "presentation/PresentationCoordinator.h"

namespace Quillory {

PresentationCoordinator::PresentationCoordinator(
    LibraryStore& store, KeyboardShortcuts& shortcuts, Workspace& workspace, PanelSurface& panel)
    : m_store(store)
    , m_workspace(workspace)
    , m_panel(panel)
{
    shortcuts.onKeyUp(ShortcutName::toggleQuillory(), [this] { toggle(); });
    m_activations = m_workspace.observeActivation(
        [this](RunningApplication const& application) { applicationActivated(application); });
}

void PresentationCoordinator::toggle()
{
    if (m_state == PresentationState::closed)
        open();
    else
        close();
}

void PresentationCoordinator::open()
{
    if (m_state == PresentationState::closed)
        m_previousApp = m_workspace.frontmostApplication();
    m_store.reload();
    m_state = PresentationState::panel;
    m_panel.show();
}

void PresentationCoordinator::close()
{
    m_state = PresentationState::closed;
    m_panel.orderOut();
    restorePreviousApp();
}

void PresentationCoordinator::windowWillClose()
{
    m_state = PresentationState::closed;
    restorePreviousApp();
}

void PresentationCoordinator::restorePreviousApp()
{
    if (!isThisApplication(m_workspace.frontmostApplication()))
        return; // another application has taken the front meanwhile, and keeps it
    if (m_previousApp && !isThisApplication(m_previousApp))
        m_workspace.activate(*m_previousApp);
}

void PresentationCoordinator::applicationActivated(RunningApplication const& application)
{
    if (m_state == PresentationState::panel && !isThisApplication(application))
        m_previousApp = application;
}

bool PresentationCoordinator::isThisApplication(std::optional<RunningApplication> const& application) const
{
    return application && application->bundleIdentifier == m_workspace.mainBundleIdentifier();
}

}
