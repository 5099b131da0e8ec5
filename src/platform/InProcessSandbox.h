#pragma once

#include "platform/Interpreter.h"
#include "platform/Sandbox.h"

#include <memory>
#include <utility>
#include <vector>

namespace Quillory {

// Interprets within `start` and within this process: protects from nothing.
class InProcessSandbox final : public Sandbox {
public:
    explicit InProcessSandbox(Interpreter interpreter)
        : m_interpreter(std::move(interpreter))
    {
    }

    std::shared_ptr<SandboxJob> start(SandboxRequest request) override
    {
        auto job = std::make_shared<SandboxJob>(std::move(request));
        auto const& asked = job->request();
        auto const answer = std::make_shared<std::vector<std::byte>>();
        m_interpreter(asked.operation, asked.argument, std::as_bytes(std::span(asked.bytes)),
            [&](std::span<std::byte const> bytes) { answer->insert(answer->end(), bytes.begin(), bytes.end()); });
        answer->shrink_to_fit(); // it may be kept as long as what shows it
        auto value = asked.adopt(SealedBytes(answer, *answer));
        job->finish(value ? SandboxJob::Answer(std::move(value)) : std::unexpected(SandboxFailure::crashed));
        return job;
    }

private:
    Interpreter m_interpreter;
};

}
