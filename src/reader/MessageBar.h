#pragma once

#include "library/LibraryStore.h"
#include "reader/BannerLabel.h"
#include "reader/ReaderWindowState.h"

namespace Quillory {

// The store's message, until it is dismissed. Hidden while there is nothing. GUI thread only.
class MessageBar : public QWidget {
    Q_OBJECT
public:
    // The store outlives the bar.
    MessageBar(LibraryStore& store, QWidget* parent);

    void refresh(ReaderWindowState const& state);

private:
    LibraryStore& m_store;
    BannerLabel* m_text;
};

}
