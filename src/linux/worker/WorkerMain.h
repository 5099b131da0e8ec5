#pragma once

#include "platform/Interpreter.h"

#include <functional>

namespace Quillory {

// Whether this process was started to be a worker. To be asked first of all in `main`.
bool isWorkerStart(int argc, char const* const* argv);

// The life of a worker: `prepare` makes its interpreter, and may still load libraries; then the process is confined and
// answers what it is asked, one request after the other, until nobody is left to ask. Gives the exit code.
int runWorker(std::function<Interpreter()> const& prepare);

}
