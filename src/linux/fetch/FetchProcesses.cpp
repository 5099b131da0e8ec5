#include "linux/fetch/FetchProcesses.h"

#include "linux/fetch/FetchProcess.h"

#include <memory>

namespace Quillory {

Registration FetchProcesses::start(Request request, Received received, Done done)
{
    auto process = std::make_unique<FetchProcess>(
        m_executor, m_program, std::move(request), std::move(received), std::move(done));
    return Registration([process = std::move(process)]() mutable { process.reset(); });
}

}
