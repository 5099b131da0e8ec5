// The library search of the store.

#include "library/LibraryStore.h"

#include <algorithm>
#include <utility>

namespace Quillory {

void LibraryStore::setLibraryQuery(QString const& query)
{
    if (query == libraryQuery.value())
        return;
    libraryQuery.setValue(query);
    m_resultActions.reset(); // they were for other results
    updateResults();
}

void LibraryStore::updateResults()
{
    auto const found = m_search.find(libraryQuery.value());
    if (!found) {
        if (!m_resultActions)
            m_resultActions.emplace();
        return;
    }
    libraryResults.setValue(*found);
    auto const actions = std::exchange(m_resultActions, std::nullopt);
    if (actions)
        std::ranges::for_each(*actions, [](auto const& action) { action(); });
}

// False when it is known that there are no results.
bool LibraryStore::withResults(std::function<void()> action)
{
    if (m_resultActions) {
        m_resultActions->push_back(std::move(action));
        return true;
    }
    if (libraryResults.value().isEmpty())
        return false;
    action();
    return true;
}

std::optional<qsizetype> LibraryStore::selectedResult() const
{
    auto const* const selected = selectedSheet();
    auto const position = selected ? libraryResults.value().indexOf(selected->id) : -1;
    return position >= 0 ? std::optional(position) : std::nullopt;
}

bool LibraryStore::selectAdjacentResult(int offset)
{
    return withResults([this, offset] {
        auto const& results = libraryResults.value();
        if (results.isEmpty())
            return;
        auto const last = results.size() - 1;
        auto const selected = selectedResult();
        if (!selected)
            select(offset >= 1 ? results.first() : results.at(last));
        else if (auto const target = std::clamp<qsizetype>(*selected + offset, 0, last); target != *selected)
            select(results.at(target));
    });
}

bool LibraryStore::acceptLibrarySearch()
{
    return withResults([this] {
        auto const& results = libraryResults.value();
        if (results.isEmpty())
            return;
        if (!selectedResult())
            select(results.first());
        librarySearchVisible.setValue(false);
    });
}

}
