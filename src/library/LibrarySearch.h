#pragma once

#include "library/FoldedSheets.h"
#include "library/LibraryQuery.h"
#include "platform/Executor.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace Quillory {

// The search of the library: which sheets hold a query. The first one has the texts folded on a worker; from then on those
// that change are folded as they come, so that a search is over within the turn that asks for it. Main thread only.
class LibrarySearch {
public:
    // The executor outlives it. `foldedMore` is called when a search that had to wait can be asked for again.
    LibrarySearch(Executor& executor, std::function<void()> foldedMore);
    ~LibrarySearch();
    LibrarySearch(LibrarySearch const&) = delete;
    LibrarySearch& operator=(LibrarySearch const&) = delete;

    // Looks at these from now on.
    void setSheets(QList<Sheet> const& sheets);

    // The ids of the sheets that hold what is typed, in the order of the sheets. Absent while texts are being folded.
    std::optional<QStringList> find(QStringView typed);

    // Folds what is to be folded before the first key comes.
    void prepare();

    // Lets go of what was folded, until something is searched for again.
    void forget();

private:
    struct Found {
        QByteArray query;
        FoldedSheets::Positions sheets;
    };

    bool isFolded() const { return m_folded && m_folded->sheets().isSharedWith(m_sheets); }
    void fold();
    void takeFolded(std::shared_ptr<FoldedSheets const> folded);

    Executor& m_executor;
    std::function<void()> m_foldedMore;
    QList<Sheet> m_sheets;
    std::shared_ptr<FoldedSheets const> m_folded; // of these sheets or, while they are being folded, of earlier ones
    std::optional<Found> m_found; // by the last search among them
    bool m_isUsed = false;
    Registration m_foldTask;
    std::stop_source m_foldEnd;
};

}
