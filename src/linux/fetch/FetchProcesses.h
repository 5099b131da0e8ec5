#pragma once

#include "platform/Downloads.h"
#include "platform/Executor.h"

#include <QString>

#include <utility>

namespace Quillory {

// Downloads by a process for each: what encryption and the web's protocols take of memory ends with it, and what a
// server sends is interpreted outside of this program.
class FetchProcesses final : public Downloads {
public:
    FetchProcesses(Executor& executor, QString program)
        : m_executor(executor)
        , m_program(std::move(program))
    {
    }

    Registration start(Request request, Received received, Done done) override;

private:
    Executor& m_executor;
    QString m_program;
};

}
