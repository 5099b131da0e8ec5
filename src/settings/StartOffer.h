#pragma once

#include "library/LibraryStore.h"
#include "platform/Autostart.h"
#include "platform/UserDefaults.h"

#include <QCoreApplication>

namespace Quillory {

// Tells once, after the user has connected a folder, that the program can start with the desktop. Main thread only.
class StartOffer {
    Q_DECLARE_TR_FUNCTIONS(StartOffer)
public:
    // All of them outlive it.
    StartOffer(LibraryStore& store, UserDefaults& defaults, Executor& executor, Autostart const& autostart);

private:
    void offer();

    LibraryStore& m_store;
    UserDefaults& m_defaults;
    Autostart const& m_autostart;
    QPropertyNotifier m_folderChanges;
    Registration m_task;
};

}
