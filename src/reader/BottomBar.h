#pragma once

#include "reader/BusyIndicator.h"
#include "reader/ReaderWindowState.h"

#include <QWidget>

namespace Quillory {

class BarButton;
class ElidedLabel;

// Goes from sheet to sheet, says what format the sheet has and that something goes on, and has the menu of everything
// else. GUI thread only.
class BottomBar : public QWidget {
    Q_OBJECT
public:
    // Store and executor outlive the bar.
    BottomBar(LibraryStore& store, Executor& executor, QWidget* parent);

    void refresh(ReaderWindowState const& state);

    // The button that the actions menu hangs from.
    BarButton& actions() const { return *m_actions; }

private:
    BarButton* m_previous;
    BarButton* m_next;
    ElidedLabel* m_format;
    BusyIndicator* m_progress;
    BarButton* m_actions;
};

}
