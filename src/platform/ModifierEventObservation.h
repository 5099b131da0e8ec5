#pragma once

#include <functional>

namespace Quillory {

// A running source of events, and all that its owner has of it.
struct ModifierEventObservation {
    std::function<bool()> isActive;
    // Nothing is received afterwards. Harmless when called again.
    std::function<void()> cancel;
};

}
