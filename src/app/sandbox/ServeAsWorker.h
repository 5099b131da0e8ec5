#pragma once

#include <optional>

namespace Quillory {

// To be called first in `main` of a program that has a WorkerPool: gives an exit code when the process was started as a
// worker of it, after its life as one.
std::optional<int> serveAsWorker(int argc, char const* const* argv);

}
