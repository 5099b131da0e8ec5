#pragma once

#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "library/LibraryStore.h"
#include "platform/DesktopHotKeys.h"
#include "platform/NotificationCenter.h"
#include "platform/Workspace.h"

#include <QCoreApplication>

namespace Quillory {

// Tells the user of shortcuts that do nothing because another program holds them or the desktop does not bind them: in
// the reader's message until they could be had or were changed, and once in the log. The desktop does not tell of keys
// that come free: they are asked for again whenever another window comes to the front, the reader's included.
// Main thread only.
class TakenShortcuts {
    Q_DECLARE_TR_FUNCTIONS(TakenShortcuts)
public:
    struct Services {
        KeyboardShortcuts& shortcuts;
        LibraryStore& store;
        Workspace& workspace;
        NotificationCenter& notifications;
        std::function<QString(Shortcut const&)> inWords; // "Ctrl+Alt+K"
        std::function<void(QString const&)> log;
        DesktopHotKeys* desktopHotKeys = nullptr; // where the desktop may bind the keys
    };

    // All services outlive it.
    explicit TakenShortcuts(Services services);

    void look();

private:
    QStringList sentences();

    Services m_services;
    QStringList m_sentences;
    bool m_isTold = false;
    bool m_hadService = false; // the desktop has bound keys in this run
    Registration m_activations;
    Registration m_changes;
    Registration m_desktopChanges;
};

}
