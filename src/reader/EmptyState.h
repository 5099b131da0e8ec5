#pragma once

#include "library/LibraryStore.h"

#include <QWidget>

class QLabel;
class QPushButton;

namespace Quillory {

// Stands in the place of a sheet while there is none, with the way to a folder. GUI thread only.
class EmptyState : public QWidget {
    Q_OBJECT
public:
    // The store outlives it.
    EmptyState(LibraryStore& store, QWidget* parent);

    // Hidden while a sheet is shown.
    void refresh(bool hasSheet);

private:
    LibraryStore& m_store;
    QLabel* m_text;
    QPushButton* m_chooseFolder;
};

}
