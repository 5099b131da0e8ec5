#include "library/LibrarySearch.h"

#include "text/SearchBytes.h"

#include <utility>

namespace Quillory {

LibrarySearch::LibrarySearch(Executor& executor, std::function<void()> foldedMore)
    : m_executor(executor)
    , m_foldedMore(std::move(foldedMore))
{
}

LibrarySearch::~LibrarySearch()
{
    m_foldEnd.request_stop();
}

void LibrarySearch::setSheets(QList<Sheet> const& sheets)
{
    m_executor.discard(std::exchange(m_sheets, sheets)); // it may be the last to hold what has changed
    m_found.reset();
    if (m_isUsed)
        fold();
}

void LibrarySearch::prepare()
{
    m_isUsed = true;
    fold();
}

// One at a time. What changes meanwhile is folded by one more, which finds most of it done.
void LibrarySearch::fold()
{
    if (isFolded() || m_foldTask.isActive())
        return;
    m_foldEnd = {};
    auto const work = [sheets = m_sheets, earlier = m_folded, end = m_foldEnd.get_token()] {
        return FoldedSheets::of(sheets, earlier, end);
    };
    m_foldTask = m_executor.detach(
        work, [this](std::shared_ptr<FoldedSheets const> folded) { takeFolded(std::move(folded)); });
}

void LibrarySearch::takeFolded(std::shared_ptr<FoldedSheets const> folded)
{
    m_foldTask.end();
    m_found.reset();
    m_executor.discard(std::exchange(m_folded, std::move(folded)));
    if (isFolded())
        m_foldedMore();
    else
        fold();
}

std::optional<QStringList> LibrarySearch::find(QStringView typed)
{
    QStringList ids;
    ids.reserve(m_sheets.size());
    auto const query = LibraryQuery::of(typed).bytes;
    if (!query || m_sheets.isEmpty()) {
        for (auto const& sheet : std::as_const(m_sheets))
            ids.append(sheet.id);
        return ids;
    }
    prepare();
    if (!isFolded())
        return std::nullopt;
    // What holds the longer query holds each piece of it.
    bool const isNarrower = m_found && holdsSearchBytes(*query, m_found->query);
    auto sheets = isNarrower ? m_folded->holding(*query, m_found->sheets) : m_folded->holding(*query);
    for (auto const sheet : sheets)
        ids.append(m_sheets.at(sheet).id);
    m_found = Found { *query, std::move(sheets) };
    return ids;
}

void LibrarySearch::forget()
{
    m_foldEnd.request_stop();
    m_foldTask.end();
    m_found.reset();
    m_isUsed = false;
    m_executor.discard(std::exchange(m_folded, nullptr));
}

}
