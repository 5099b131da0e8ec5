#include "library/Arrivals.h"

namespace Quillory {

void Arrivals::expect(SandboxJob& job, std::size_t number)
{
    job.whenFinished([box = m_box, number] {
        {
            std::lock_guard const lock(box->mutex);
            box->numbers.push_back(number);
        }
        box->arrived.notify_one();
    });
}

std::optional<std::size_t> Arrivals::next(Time until, std::stop_token const& ended)
{
    std::unique_lock lock(m_box->mutex);
    if (!m_box->arrived.wait_until(lock, ended, until, [this] { return !m_box->numbers.empty(); }))
        return std::nullopt;
    auto const number = m_box->numbers.front();
    m_box->numbers.pop_front();
    return number;
}

}
