#include "OrderlyEnd.h"

#include <cstdio>
#include <cstdlib>
#include <limits>
#include <utility>

#include <unistd.h>

namespace Quillory {

namespace {

OrderlyEnd* current = nullptr;

}

OrderlyEnd::OrderlyEnd(std::function<void()> ending)
    : m_ending(std::move(ending))
{
    current = this;
    std::atexit(&OrderlyEnd::atExit);
}

OrderlyEnd::~OrderlyEnd()
{
    run();
    current = nullptr;
}

void OrderlyEnd::run()
{
    if (auto const ending = std::exchange(m_ending, nullptr))
        ending();
}

void OrderlyEnd::atExit()
{
    if (!current)
        return;
    current->run();
    leave(EXIT_FAILURE);
}

void OrderlyEnd::leave(int exitCode)
{
    std::fflush(nullptr);
    // A thread in a call that can't be interrupted keeps the process until its drive answers. Windows, grabs and the name
    // on the bus must not stay that long.
    close_range(STDERR_FILENO + 1, std::numeric_limits<unsigned>::max(), 0);
    std::_Exit(exitCode);
}

}
