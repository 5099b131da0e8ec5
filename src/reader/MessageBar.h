#pragma once

#include "library/LibraryStore.h"

#include <QWidget>

class QLabel;

namespace Quillory {

// The store's message, until it is dismissed. Hidden while there is nothing. GUI thread only.
class MessageBar : public QWidget {
    Q_OBJECT
public:
    // The store outlives the bar.
    MessageBar(LibraryStore& store, QWidget* parent);

    // Takes over the store's message.
    void refresh();

private:
    LibraryStore& m_store;
    QLabel* m_text;
};

}
