#pragma once

#include "library/LibraryStore.h"
#include "platform/Compositing.h"
#include "platform/Executor.h"
#include "platform/PanelWindow.h"
#include "platform/Screens.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"
#include "presentation/PanelCorners.h"
#include "presentation/PanelFrameGuard.h"
#include "presentation/PanelSurface.h"
#include "presentation/WindowDrag.h"
#include "presentation/WindowEdges.h"
#include "reader/ReaderView.h"

#include <QProperty>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

namespace Quillory {

// The one window that shows sheets. It is made once, hidden or visible for the whole run, and stays ready between
// shows, so that a show only has to map it. GUI thread only; all that is handed in outlives it.
class ReaderPanel final : public QWidget, public PanelSurface {
    Q_OBJECT
public:
    struct Services {
        UserDefaults& defaults;
        Workspace& workspace;
        Screens& screens;
        Compositing& compositing;
        ReaderServices reader;
        MakePanelWindow makeWindow;
    };

    static constexpr QLatin1StringView frameKey { "persistentPanelFrame" };

    ReaderPanel(LibraryStore& store, Services services);
    ~ReaderPanel() override;

    void show(PanelPresence presence) override;
    void makeKeyAndOrderFront() override;
    void orderOut() override;
    bool isMinimized() const override { return m_window->isMinimized(); }
    void savePanelFrame() override;
    void focusReader() override;
    void applyPeekLevel(PanelPresence presence) override;
    void dismissTooltips() override;

    // Of the panel as it is seen, without its shadow.
    QRect frame() const;

    // The reader asks to be closed.
    std::function<void()> onDismiss = [] { };
    // The window system has moved or resized the window; it is about to close by its close button.
    std::function<void()> onMoved = [] { };
    std::function<void()> onResized = [] { };
    std::function<void()> onClosing = [] { };

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    // While the panel is up, also when it is covered or minimized.
    struct Shown {
        bool isLevelTold = false; // to the window manager, since the panel has come up
        bool isFresh = false; // shown in this turn, with nothing left to do for its place at the front
    };

    void come();
    void toFront();
    void paintAhead();
    void takeFrame();
    std::optional<Screens::Screen> usersScreen() const;
    void followFrame(QEvent const& event);
    void userTakes(Qt::Edges edges, QPoint pointer);
    void comeOnScreen();
    void didComeUp();
    void takeLevel();
    void tellLevel();
    void hidePanel();
    QRect placedFrame() const; // by the window system, which may not have done yet as it was asked
    void askForFrame(QRect const& frame);
    void makeNativeWindow();
    void followCompositing();
    void shape();
    void tellShadow();

    LibraryStore& m_store;
    Services m_services;
    ReaderView m_view;
    std::unique_ptr<PanelWindow> m_window;
    WindowDrag m_drag;
    bool m_canShineThrough = false;
    PanelCorners m_corners;
    std::unique_ptr<WindowEdges> m_edges;
    Registration m_compositingChanges;
    PanelFrameGuard m_restoringPanelFrame;
    std::optional<QList<Screens::Screen>> m_screens; // as they were when the panel was placed
    Registration m_focusTask;
    Registration m_levelTask;
    Registration m_screenChanges;
    QPropertyNotifier m_filePanels;
    PanelPresence m_presence = PanelPresence::resident;
    std::optional<Shown> m_shown;
};

}
