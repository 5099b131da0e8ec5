#pragma once

#include "platform/Executor.h"

#include <QString>

#include <functional>

namespace Quillory {

// All that the reader's views need of the program around them, next to the store. It outlives them.
struct ReaderServices {
    Executor& executor;
    // Hands an address of the web to the desktop.
    std::function<void(QString const& link)> openLink = [](auto const&) { };
};

}
