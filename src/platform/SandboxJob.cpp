#include "platform/SandboxJob.h"

#include <utility>

namespace Quillory {

SandboxJob::SandboxJob(SandboxRequest request)
    : m_request(std::move(request))
{
}

SandboxJob::~SandboxJob()
{
    if (!m_answer && m_abandoned)
        m_abandoned();
}

std::optional<SandboxJob::Answer> SandboxJob::answer() const
{
    std::lock_guard const lock(m_mutex);
    return m_answer;
}

void SandboxJob::whenFinished(std::function<void()> told)
{
    {
        std::lock_guard const lock(m_mutex);
        if (!m_answer) {
            m_told = std::move(told);
            return;
        }
    }
    if (told)
        told();
}

void SandboxJob::finish(Answer answer)
{
    std::function<void()> told;
    {
        std::lock_guard const lock(m_mutex);
        if (m_answer)
            return;
        m_answer = std::move(answer);
        told = std::exchange(m_told, nullptr);
    }
    if (told)
        told();
}

void SandboxJob::whenAbandoned(std::function<void()> abandoned)
{
    std::lock_guard const lock(m_mutex);
    m_abandoned = std::move(abandoned);
}

}
