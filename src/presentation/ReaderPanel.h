#pragma once

#include "library/LibraryStore.h"
#include "platform/Workspace.h"
#include "presentation/PanelSurface.h"
#include "reader/ReaderView.h"

#include <QWidget>

#include <functional>

namespace Quillory {

// The one window that shows sheets. It is made once, hidden or visible for the whole run, and stays ready between
// shows, so that a show only has to map it. GUI thread only; store and workspace outlive it.
class ReaderPanel final : public QWidget, public PanelSurface {
    Q_OBJECT
public:
    ReaderPanel(LibraryStore& store, Workspace& workspace);

    void show() override;
    void orderOut() override;

    // Called when the reader asks to be closed, and when the window was closed by the user.
    std::function<void()> onDismiss;
    std::function<void()> onClosed;

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void moveToUsersScreen();

    Workspace& m_workspace;
    ReaderView m_view;
    bool m_isPlaced = false;
};

}
