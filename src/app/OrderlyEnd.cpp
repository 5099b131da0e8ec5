#include "OrderlyEnd.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

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
    std::fflush(nullptr);
    std::_Exit(EXIT_FAILURE);
}

}
