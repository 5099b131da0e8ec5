#pragma once

#include <QElapsedTimer>
#include <QFile>

#include <malloc.h>

// Clocks, medians and tables shared by the benchmarks.

// Wall time of one call, in milliseconds.
template<typename Function>
double milliseconds(Function function)
{
    QElapsedTimer timer;
    timer.start();
    function();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

// Resident memory in megabytes, without what the allocator holds back.
inline double residentMegabytes()
{
    malloc_trim(0);
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toDouble() * 4096 / 1e6;
}
