#pragma once

#include "platform/ApplicationInstance.h"

#include <utility>
#include <vector>

namespace Quillory {

// A session in which a test decides who is first, and plays the other processes.
class FakeApplicationInstance final : public ApplicationInstance {
public:
    Role start(Wish wish) override
    {
        starts.push_back(wish);
        return role;
    }

    Registration observeRequests(std::function<void(Request const&)> requested) override
    {
        m_requested = std::move(requested);
        for (auto const& request : std::exchange(m_kept, {}))
            m_requested(request);
        return Registration([this] { m_requested = nullptr; });
    }

    void request(Request const& request)
    {
        if (m_requested)
            m_requested(request);
        else
            m_kept.push_back(request);
    }

    Role role = Role::first;
    std::vector<Wish> starts;

private:
    std::function<void(Request const&)> m_requested;
    std::vector<Request> m_kept;
};

}
