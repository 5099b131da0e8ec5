#pragma once

#include "library/LibraryStore.h"
#include "platform/ApplicationInstance.h"

#include <QCoreApplication>

#include <chrono>
#include <functional>
#include <list>

namespace Quillory {

// Follows requests for one sheet, by a name that somebody outside of the program gives it. Main thread only.
class SheetRequests {
    Q_DECLARE_TR_FUNCTIONS(SheetRequests)
public:
    using Answer = ApplicationInstance::Answer;

    // How long a request waits for a load. Who asks from another process waits for five seconds.
    static constexpr std::chrono::seconds patience { 3 };

    // All outlive it. `open` shows the reader, also when it is up.
    SheetRequests(LibraryStore& store, Executor& executor, std::function<void()> open);

    // Selects the sheet and opens the reader. A name that no sheet has may come with the load that runs: until that has
    // ended nothing is refused. Where no sheet is known yet the reader opens at once, and what is asked of it meanwhile
    // finds it open.
    void show(QString const& name, Answer const& answer);

private:
    enum class Reader { closed, opened };
    struct Waiting {
        QString name;
        Answer answer;
        Reader reader;
        Registration deadline;
    };

    // Whether the request has got its answer.
    bool settle(QString const& name, Answer const& answer, Reader reader);
    bool isLoading() const { return m_store.busy || m_store.isLoadDue(); }
    void refuse(QString const& sentence, Answer const& answer, Reader reader);
    void lookLater();
    void look();
    void giveUp(std::list<Waiting>::iterator waiting);

    LibraryStore& m_store;
    Executor& m_executor;
    std::function<void()> m_open;
    std::list<Waiting> m_waiting; // in the order in which they came
    Registration m_look;
    QPropertyNotifier m_sheets;
    QPropertyNotifier m_busy;
};

}
