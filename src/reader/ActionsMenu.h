#pragma once

#include "reader/ReaderWindowState.h"

#include <functional>
#include <memory>

class QMenu;
class QWidget;

namespace Quillory {

// The menu of the reader's actions.
struct ActionsMenu {
    LibraryStore& store;
    std::function<void()> find;
    std::function<void()> installStarters;
    std::function<void()> openSettings; // empty where there are none
    std::function<void()> quit;

    // Over `parent`, to whose window file panels are attached.
    std::unique_ptr<QMenu> make(ReaderWindowState const& state, QWidget& parent) const;
};

}
