#pragma once

#include "platform/Announcements.h"
#include "platform/Clipboard.h"
#include "platform/Executor.h"
#include "platform/NotificationCenter.h"

#include <QStringList>

#include <functional>

namespace Quillory {

// All that the reader's views need of the program around them, next to the store. It outlives them.
struct ReaderServices {
    Executor& executor;
    Clipboard& clipboard;
    NotificationCenter& notifications;
    Announcements& announcements;
    // Opens the settings window; empty where there is none.
    std::function<void()> openSettings = nullptr;
    // Ends the whole program.
    std::function<void()> quit = [] { };
    // How the reader is called, one sentence for each shortcut.
    std::function<QStringList()> howToCall = [] { return QStringList(); };
};

}
