#pragma once

#include <QByteArray>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <thread>

namespace Quillory {

// How workers are started and how long they may take.
struct WorkerSettings {
    // Two even on one processor, so that one is there for a sheet that was just saved.
    static std::size_t mostOfThisMachine()
    {
        return std::clamp<std::size_t>(std::thread::hardware_concurrency(), 2, 4);
    }

    QByteArray program = "/proc/self/exe"; // this binary, also after it has been replaced
    std::size_t most = mostOfThisMachine(); // workers
    std::chrono::nanoseconds idleTime = std::chrono::seconds(5); // after which those without work go

    // Processor time for an item: the base, and as much again for each MiB. A worker that sleeps uses none, so that it
    // also has a limit on the clock, some times as long.
    std::chrono::nanoseconds baseAllowance = std::chrono::seconds(1);
    int patience = 10;

    // Processor time after which an item makes room for those that wait, and small items are no longer tried together.
    std::chrono::nanoseconds slice = std::chrono::milliseconds(100);

    std::chrono::nanoseconds allowance(std::size_t bytes) const
    {
        constexpr double mebibyte = 1 << 20;
        auto const share = static_cast<double>(baseAllowance.count()) * static_cast<double>(bytes) / mebibyte;
        return baseAllowance + std::chrono::nanoseconds(static_cast<std::chrono::nanoseconds::rep>(share));
    }
};

}
