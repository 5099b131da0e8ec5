#pragma once

#include "platform/StatusMenu.h"

#include <QMenu>
#include <QPoint>

#include <functional>
#include <memory>

namespace Quillory {

// The menu for one click, drawn by the program where no tray draws it. GUI thread only.
class TrayMenu {
public:
    // Nothing for an empty menu. One that is still up from before goes. `chosen` is called from the event loop.
    void popUp(StatusMenu const& menu, QPoint place, std::function<void(int number)> chosen);

private:
    std::unique_ptr<QMenu> m_menu; // kept until the next, since it tells of its end later than it ends
};

}
