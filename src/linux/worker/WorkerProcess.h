#pragma once

#include "linux/files/FileDescriptor.h"
#include "linux/worker/MemoryFile.h"
#include "linux/worker/WorkerProtocol.h"

#include <QByteArray>

#include <chrono>
#include <cstddef>
#include <optional>
#include <vector>

#include <sys/types.h>

namespace Quillory {

// One worker as the program sees it. Its process ends when the thread that started it does. For one thread.
class WorkerProcess {
public:
    enum class Received { nothing, message, end };

    // Absent when no process could be had.
    static std::optional<WorkerProcess> start(QByteArray const& program);

    WorkerProcess(WorkerProcess&&) = default;
    WorkerProcess& operator=(WorkerProcess&&) = default;
    ~WorkerProcess();

    int socket() const { return m_socket.number(); }
    int processDescriptor() const { return m_process.number(); }

    // Processor time that it has used until now.
    std::chrono::nanoseconds processorTime() const;

    // Gives it work for that much processor time; false when it can't be reached.
    bool ask(std::vector<WorkerProtocol::Item> const& items, MemoryFile const& bytes, MemoryFile const& answers,
        std::chrono::nanoseconds allowance);

    // The next message of the worker, without waiting for one.
    Received receive(std::vector<std::byte>& message) const;

    void kill();

    // True once the process has ended, and is no longer in the system's table.
    bool collect();

private:
    WorkerProcess(FileDescriptor socket, FileDescriptor process, pid_t number);

    FileDescriptor m_socket;
    FileDescriptor m_process; // not open once the process is collected
    pid_t m_number;
};

}
