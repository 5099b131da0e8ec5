#pragma once

#include "platform/SandboxJob.h"

#include <memory>

namespace Quillory {

// Where foreign bytes are interpreted, so that they can harm nothing: bytes go in, and a value comes back later.
// Safe on any thread.
class Sandbox {
public:
    virtual ~Sandbox() = default;

    // Begins at once or when its turn comes. The request is taken back when the job is let go.
    virtual std::shared_ptr<SandboxJob> start(SandboxRequest request) = 0;

    // Says that work may come soon.
    virtual void prepare() { }
};

}
