#pragma once

#include "platform/Registration.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace Quillory {

// Those who want to be told of something, in order of arrival. A call reaches who observed at its start and still does:
// an observer may add others and end any of them, itself too. Main thread only.
template<typename Signature>
class Observers;

template<typename Answer, typename... Arguments>
class Observers<Answer(Arguments...)> {
public:
    using Observer = std::function<Answer(Arguments...)>;

    Observers() = default;
    Observers(Observers const&) = delete;
    Observers& operator=(Observers const&) = delete;

    // The registration may outlive this list.
    Registration add(Observer observer)
    {
        auto entry = std::make_shared<Entry>(std::move(observer));
        m_entries->push_back(entry);
        return Registration([entries = std::weak_ptr(m_entries), entry = std::move(entry)] {
            entry->isObserving = false;
            if (auto const living = entries.lock())
                std::erase(*living, entry);
        });
    }

    bool isEmpty() const { return m_entries->empty(); }

    void tell(Arguments... arguments) const
    {
        auto const entries = *m_entries;
        for (auto const& entry : entries) {
            if (entry->isObserving)
                entry->observer(arguments...);
        }
    }

    // Goes on until one answers like that. True when one did.
    bool tellUntil(auto decisive, Arguments... arguments) const
    {
        auto const entries = *m_entries;
        return std::ranges::any_of(entries,
            [&](auto const& entry) { return entry->isObserving && entry->observer(arguments...) == decisive; });
    }

private:
    struct Entry {
        Observer observer;
        bool isObserving = true;
    };

    std::shared_ptr<std::vector<std::shared_ptr<Entry>>>
        m_entries = std::make_shared<std::vector<std::shared_ptr<Entry>>>();
};

}
