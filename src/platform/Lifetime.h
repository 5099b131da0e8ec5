#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace Quillory {

// A member of whoever hands out callbacks that may be called after its end: those that were guarded do nothing from
// then on. Where a service returns a registration that its owner keeps, no guard is needed. Main thread only.
class Lifetime {
public:
    Lifetime() = default;
    Lifetime(Lifetime const&) = delete;
    Lifetime& operator=(Lifetime const&) = delete;

    // `callback`, which gives nothing back, for as long as this lives and `end` is not called.
    template<typename Callback>
    auto guarded(Callback callback) const
    {
        return [alive = std::weak_ptr(m_token), callback = std::move(callback)]<typename... Arguments>(
                   Arguments&&... arguments) mutable {
            if (!alive.expired())
                std::invoke(callback, std::forward<Arguments>(arguments)...);
        };
    }

    // Everything guarded until now does nothing any more.
    void end() { m_token = std::make_shared<char>(); }

private:
    std::shared_ptr<void> m_token = std::make_shared<char>();
};

}
