#pragma once

#include "platform/Clipboard.h"
#include "platform/Executor.h"

namespace Quillory {

// All that the reader's views need of the program around them, next to the store. It outlives them.
struct ReaderServices {
    Executor& executor;
    Clipboard& clipboard;
};

}
