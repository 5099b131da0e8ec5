#pragma once

#include "reader/SheetList.h"

#include <QWidget>

namespace Quillory {

// The sheets of the folder, under a heading. GUI thread only.
class Sidebar : public QWidget {
    Q_OBJECT
public:
    // The store outlives the bar.
    Sidebar(LibraryStore& store, QWidget* parent);

    SheetList& list() const { return *m_list; }

private:
    SheetList* m_list;
};

}
