#pragma once

#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "library/LibraryStore.h"
#include "platform/Workspace.h"
#include "presentation/PresentationCoordinator.h"
#include "presentation/ReaderPanel.h"

#include <memory>
#include <optional>

namespace Quillory {

// Owns the program's long-lived objects. Main thread only; all services outlive it.
class AppDelegate {
public:
    // Restores the folder and starts the first load.
    AppDelegate(LibraryStore::Services services, HotKeys& hotKeys, Workspace& workspace);

    // Binds the keys. Without a folder the reader opens by itself.
    void applicationDidFinishLaunching();

    void applicationWillTerminate();

private:
    LibraryStore m_store;
    KeyboardShortcuts m_shortcuts;
    Workspace& m_workspace;
    std::unique_ptr<ReaderPanel> m_panel;
    std::optional<PresentationCoordinator> m_presentation;
};

}
