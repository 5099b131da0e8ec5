#pragma once

#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "library/LibraryStore.h"
#include "platform/Workspace.h"
#include "presentation/PanelSurface.h"
#include "presentation/PresentationState.h"

#include <optional>

namespace Quillory {

// Decides when the reader panel is on screen, and gives the keyboard back to where the user was when it goes.
// Main thread only; everything handed in outlives it.
class PresentationCoordinator {
public:
    PresentationCoordinator(
        LibraryStore& store, KeyboardShortcuts& shortcuts, Workspace& workspace, PanelSurface& panel);
    PresentationCoordinator(PresentationCoordinator const&) = delete;
    PresentationCoordinator& operator=(PresentationCoordinator const&) = delete;

    void toggle();
    void open();
    void close();

    // The panel goes by the hand of the window system.
    void windowWillClose();

    PresentationState state() const { return m_state; }

private:
    void applicationActivated(RunningApplication const& application);
    void restorePreviousApp();
    bool isThisApplication(std::optional<RunningApplication> const& application) const;

    LibraryStore& m_store;
    Workspace& m_workspace;
    PanelSurface& m_panel;
    PresentationState m_state = PresentationState::closed;
    std::optional<RunningApplication> m_previousApp; // where the keyboard goes back to
    Registration m_activations;
};

}
