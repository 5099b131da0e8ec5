#pragma once

#include "KeyboardShortcuts/MenuItem.h"

#include <vector>

namespace Quillory {

// The program's own commands with their keys, to Ctrl and to Super. A global shortcut on one of them would take the
// key from every program.
std::vector<MenuItem> mainMenu();

}
