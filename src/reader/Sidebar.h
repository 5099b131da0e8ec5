#pragma once

#include "reader/BusyIndicator.h"
#include "reader/SheetList.h"

#include <QWidget>

namespace Quillory {

// The sheets of the folder, under a heading that also tells of a load. GUI thread only.
class Sidebar : public QWidget {
    Q_OBJECT
public:
    // The store and the executor outlive the bar.
    Sidebar(LibraryStore& store, Executor& executor, QWidget* parent);

    void refresh();

    SheetList& list() const { return *m_list; }

private:
    LibraryStore& m_store;
    SheetList* m_list;
    BusyIndicator* m_busy;
};

}
