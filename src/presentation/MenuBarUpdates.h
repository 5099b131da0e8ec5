#pragma once

#include "platform/Registration.h"

#include <functional>

namespace Quillory {

// What the menu bar needs of the updater. Main thread only.
struct MenuBarUpdates {
    std::function<bool()> updateAvailable;
    std::function<bool()> canCheckForUpdates;
    std::function<void()> checkForUpdates;
    // Calls `changed` after each change of `updateAvailable`.
    std::function<Registration(std::function<void()> changed)> observeUpdateAvailable;
};

}
