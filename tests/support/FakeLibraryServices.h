#pragma once

#include "library/ForeignBytes.h"
#include "library/LibraryStore.h"
#include "linux/qt/QtPictureDecoder.h"
#include "platform/InProcessSandbox.h"
#include "support/FakeAnnouncements.h"
#include "support/FakeClipboard.h"
#include "support/FakeFileEvents.h"
#include "support/FakeFileOpener.h"
#include "support/FakeOpenPanels.h"
#include "support/FakeWorkspace.h"
#include "support/FaultyBookmarks.h"
#include "support/FaultyFileSystem.h"
#include "support/ManualExecutor.h"
#include "support/MemoryUserDefaults.h"
#include "support/TemporaryFolder.h"

namespace Quillory {

// Everything that a store stands on: real files, bookmarks and pictures in a folder of their own, all else turned by hand.
struct FakeLibraryServices {
    TemporaryFolder root;
    MemoryUserDefaults defaults;
    FaultyBookmarks bookmarks;
    FaultyFileSystem files;
    QtPictureDecoder pictures;
    InProcessSandbox sandbox { ForeignBytes::interpreter(pictures) };
    ManualExecutor executor;
    FakeFileEvents events { executor };
    FakeClipboard clipboard;
    FakeAnnouncements announcements;
    FakeFileOpener fileOpener;
    FakeOpenPanels openPanels;
    FakeWorkspace workspace;

    LibraryStore::Services services() { return services(defaults, events, executor); }
    LibraryStore::Services services(UserDefaults& otherDefaults, FileEvents& otherEvents, Executor& otherExecutor)
    {
        return { otherDefaults, bookmarks, files, sandbox, otherEvents, otherExecutor, clipboard, announcements,
            fileOpener, openPanels, workspace, root.path("starters") };
    }
};

}
