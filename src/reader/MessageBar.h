#pragma once

#include "library/LibraryStore.h"
#include "reader/BannerLabel.h"
#include "reader/ReaderWindowState.h"

namespace Quillory {

class BannerRow;
class BarButton;

// The store's message, until it is dismissed, beside what helps with it. Hidden while there is nothing. GUI thread only.
class MessageBar : public QWidget {
    Q_OBJECT
public:
    // Store and announcements outlive the bar.
    MessageBar(LibraryStore& store, Announcements& announcements, QWidget* parent);

    void refresh(ReaderWindowState const& state);

    BannerLabel& text() const { return *m_text; }
    BannerRow& row() const { return *m_row; }

Q_SIGNALS:
    void chooseFolder();

private:
    LibraryStore& m_store;
    BannerLabel* m_text;
    BannerRow* m_row;
    BarButton* m_refresh;
    BarButton* m_chooseFolder;
};

}
