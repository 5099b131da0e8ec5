#pragma once

#include "reader/LibrarySearchField.h"
#include "reader/SheetList.h"

#include <QWidget>

#include <functional>

class QLabel;

namespace Quillory {

// The sheets of the folder that the search finds, below its field and a heading.
// GUI thread only.
class Sidebar : public QWidget {
    Q_OBJECT
public:
    // The store outlives the bar. `giveUpKeyboard` hands it to the text.
    Sidebar(LibraryStore& store, std::function<void()> const& giveUpKeyboard, QWidget* parent);

    void refresh();

    SheetList& list() const { return *m_list; }
    LibrarySearchField& searchField() const { return *m_search; }

private:
    LibraryStore& m_store;
    LibrarySearchField* m_search;
    SheetList* m_list;
    QLabel* m_heading;
    QLabel* m_nothing; // in the place of the list
};

}
