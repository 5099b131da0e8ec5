#include "presentation/SheetRequests.h"

#include "library/SheetNames.h"
#include "text/OneLine.h"

#include <utility>

namespace Quillory {

SheetRequests::SheetRequests(LibraryStore& store, Executor& executor, std::function<void()> open)
    : m_store(store)
    , m_executor(executor)
    , m_open(std::move(open))
    , m_sheets(store.sheets.addNotifier([this] { lookLater(); }))
    , m_busy(store.busy.addNotifier([this] { lookLater(); }))
{
}

void SheetRequests::show(QString const& name, Answer const& answer)
{
    if (m_waiting.empty() && settle(name, answer, Reader::closed))
        return;
    auto const reader = m_store.sheets.value().isEmpty() ? Reader::opened : Reader::closed;
    auto const waiting = m_waiting.insert(m_waiting.end(), { name, answer, reader, {} });
    waiting->deadline = m_executor.after(patience, [this, waiting] { giveUp(waiting); });
    if (reader == Reader::opened)
        m_open();
}

bool SheetRequests::settle(QString const& name, Answer const& answer, Reader reader)
{
    auto const ids = idsOfSheetsCalled(name, m_store.sheets);
    if (ids.isEmpty() && isLoading())
        return false;
    if (ids.size() != 1) {
        auto const shown = oneLine(name);
        refuse(ids.isEmpty() ? tr("There is no sheet “%1”.").arg(shown)
                             : tr("Several sheets are called “%1”: %2.").arg(shown, oneLine(ids.join(u", "))),
            answer, reader);
        return true;
    }
    m_store.select(ids.first());
    if (reader == Reader::closed)
        m_open();
    answer({});
    return true;
}

// Also to the user, who sees a reader without the sheet.
void SheetRequests::refuse(QString const& sentence, Answer const& answer, Reader reader)
{
    if (reader == Reader::opened)
        m_store.showMessage(sentence);
    answer(std::unexpected(sentence));
}

// In a later turn: the store is in the middle of a change.
void SheetRequests::lookLater()
{
    if (!m_waiting.empty())
        m_look = m_executor.post([this] { look(); });
}

void SheetRequests::look()
{
    while (!m_waiting.empty() && settle(m_waiting.front().name, m_waiting.front().answer, m_waiting.front().reader))
        m_waiting.pop_front();
}

void SheetRequests::giveUp(std::list<Waiting>::iterator waiting)
{
    refuse(tr("The folder is still being read."), waiting->answer, waiting->reader);
    m_waiting.erase(waiting);
    look();
}

}
