#pragma once

#include "platform/SealedBytes.h"

#include <QByteArray>

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace Quillory {

// Of the type that the request says.
using SandboxValue = std::shared_ptr<void const>;

// What a sandbox is asked to do. It knows neither the operations nor what their answers mean.
struct SandboxRequest {
    std::uint32_t operation = 0;
    std::uint32_t argument = 0;
    QByteArray bytes;

    // Makes the value of an answer, on any thread. The answer is not to be trusted: null when it is none.
    std::function<SandboxValue(SealedBytes const&)> adopt;
};

enum class SandboxFailure {
    tookTooLong,
    crashed,     // also when the answer was none
    unavailable, // there is no sandbox to be had: says nothing about the bytes
};

// One request and, once it is there, its answer. Safe on any thread.
class SandboxJob {
public:
    using Answer = std::expected<SandboxValue, SandboxFailure>;

    explicit SandboxJob(SandboxRequest request);
    ~SandboxJob();
    SandboxJob(SandboxJob const&) = delete;
    SandboxJob& operator=(SandboxJob const&) = delete;

    SandboxRequest const& request() const { return m_request; }

    // Absent while it is under way.
    std::optional<Answer> answer() const;

    // Calls `told` once when the answer is there, on any thread, and within this call when it already is. Replaces what
    // was to be told before; empty to be told nothing.
    void whenFinished(std::function<void()> told);

    // For the sandbox. The first answer counts; `abandoned` runs when the job ends without one.
    void finish(Answer answer);
    void whenAbandoned(std::function<void()> abandoned);

private:
    SandboxRequest m_request;
    mutable std::mutex m_mutex;
    std::optional<Answer> m_answer;
    std::function<void()> m_told;
    std::function<void()> m_abandoned;
};

}
