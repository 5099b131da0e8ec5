#pragma once

#include "platform/StatusItemLook.h"
#include "platform/StatusMenu.h"

#include <functional>

namespace Quillory {

// An item of the status bar, from the first `show` to its end. Main thread only.
class StatusItem {
public:
    // Whom the item tells of its user. Each of them may end the item.
    struct Target {
        std::function<void()> clicked; // with the left button
        // The menu for one click with the right button; a bar that draws it may also ask when nobody has clicked. Empty
        // for none.
        std::function<StatusMenu()> menu;
        // The row of that number, which was enabled in the latest menu.
        std::function<void(int number)> chosen;
    };

    virtual ~StatusItem() = default;

    virtual void show(StatusItemLook const& look) = 0;
};

}
