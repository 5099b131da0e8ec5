#pragma once

#include "linux/files/FileDescriptor.h"
#include "linux/worker/WorkerSettings.h"
#include "platform/Sandbox.h"

#include <memory>
#include <mutex>
#include <thread>

namespace Quillory {

// Worker processes of the program's own binary. They start when there is work, a dead or slow one is replaced, and they
// go after some seconds without work, as does the one thread that serves them. Nothing is left of it then.
class WorkerPool final : public Sandbox {
public:
    explicit WorkerPool(WorkerSettings settings = {});
    ~WorkerPool() override;
    WorkerPool(WorkerPool const&) = delete;
    WorkerPool& operator=(WorkerPool const&) = delete;

    std::shared_ptr<SandboxJob> start(SandboxRequest request) override;
    void prepare() override;

private:
    struct Requests;

    void ensureThread();
    void refuseAll();

    WorkerSettings m_settings;
    std::shared_ptr<Requests> m_requests;
    std::mutex m_threadMutex;
    std::thread m_thread;
};

}
