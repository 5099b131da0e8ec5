#pragma once

#include "platform/Announcements.h"
#include "platform/Executor.h"
#include "platform/FileOpener.h"
#include "platform/SessionEvents.h"
#include "platform/Updater.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"

#include <memory>

namespace Quillory {

// What the program's updater stands on, in a build that has a feed. In any other there is nothing of it. Main thread only.
class Updates {
public:
    struct Services {
        UserDefaults& defaults;
        Executor& executor;
        SessionEvents& session;
        FileOpener& fileOpener;
        Workspace& workspace;
        Announcements& announcements;
    };

    explicit Updates(Services const& services);
    ~Updates();
    Updates(Updates const&) = delete;
    Updates& operator=(Updates const&) = delete;

    // Makes the updater, which ends before this object. Empty in a build without a feed.
    Updater::Make make();

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

}
