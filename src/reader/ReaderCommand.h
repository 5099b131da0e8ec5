#pragma once

#include "platform/ModifierFlags.h"

#include <optional>

namespace Quillory {

// What a key does in the window, wherever the keyboard is.
enum class ReaderCommand { searchLibrary, find, refresh, quit, largerText, smallerText, usualText, dismiss };

// `key` is a Qt::Key; modifiers that a peek holds are left out. Command keys answer to Super and to Ctrl.
std::optional<ReaderCommand> readerCommandOf(int key, ModifierFlags modifiers);

}
