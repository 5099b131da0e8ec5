#pragma once

#include "library/LibraryStore.h"
#include "support/FakeAnnouncements.h"
#include "support/FakeClipboard.h"
#include "support/FakeFileEvents.h"
#include "support/FakeFileOpener.h"
#include "support/FakeFileSystem.h"
#include "support/FakeFolderBookmarks.h"
#include "support/FakeOpenPanels.h"
#include "support/FakePictureDecoder.h"
#include "support/FakeWorkspace.h"
#include "support/ManualExecutor.h"
#include "support/MemoryUserDefaults.h"

namespace Quillory {

// Everything that a store stands on, in memory and turned by hand.
struct FakeLibraryServices {
    MemoryUserDefaults defaults;
    FakeFolderBookmarks bookmarks;
    FakeFileSystem files;
    FakePictureDecoder pictures;
    ManualExecutor executor;
    FakeFileEvents events { executor };
    FakeClipboard clipboard;
    FakeAnnouncements announcements;
    FakeFileOpener fileOpener;
    FakeOpenPanels openPanels;
    FakeWorkspace workspace;

    LibraryStore::Services services()
    {
        return { defaults, bookmarks, files, pictures, events, executor, clipboard, announcements, fileOpener,
            openPanels, workspace, QStringLiteral("/starters") };
    }
};

}
