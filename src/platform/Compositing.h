#pragma once

#include "platform/Registration.h"

#include <functional>

namespace Quillory {

// Whether the window system draws windows one through the other, so that what is transparent in one lets through what
// lies below; elsewhere it is black. Main thread only.
class Compositing {
public:
    virtual ~Compositing() = default;

    virtual bool isRunning() const = 0;
    virtual Registration observeChanges(std::function<void()> changed) = 0;
};

}
