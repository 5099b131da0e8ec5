#pragma once

#include "library/LibraryStore.h"
#include "reader/ReaderCommand.h"
#include "reader/ReaderServices.h"
#include "reader/ReaderWindowState.h"

#include <QPointer>
#include <QProperty>
#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

class QWheelEvent;

namespace Quillory {

class BottomBar;
class ReaderTextView;
class ReadingSide;
class SheetOverlay;
class Sidebar;
class TextSizePopover;
class TopBar;

// The whole content of the reader panel: a top bar, the sidebar of sheets, the selected sheet with its banners, and a
// bottom bar. Follows the store; several changes of one turn of the event loop cost one refresh. GUI thread only.
class ReaderView : public QWidget {
    Q_OBJECT
public:
    // The store outlives the view; `dismiss` closes the reader.
    ReaderView(LibraryStore& store, ReaderServices services, std::function<void()> dismiss, QWidget* parent = nullptr);
    ~ReaderView() override;

    // The bar by which the window around it can be dragged.
    QWidget* topBar() const;
    ReaderTextView* textView() const;

    // Leaves what the user did in the view itself, for the next time that it is called up.
    void startAfresh();

    // Takes over now what has changed, instead of in a later turn.
    void refresh();

    // Puts the keyboard on the text, or without a sheet on the way to one.
    void takeKeyboard();

    // False when the key does nothing in the window.
    bool perform(QKeyEvent const& event);

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool forwards) override;

private:
    void layOut();
    void connectBars();
    void observeStore();
    void refreshLater();
    void applyStyle();
    void perform(ReaderCommand command);
    bool turnTextSize(QWheelEvent const& wheel);
    void changeTextSize(double size);
    void searchLibrary();
    void openFind();
    void closeFind();
    void toggleTextSize();
    void showStarters();
    void showActions();
    void chooseFolder();

    LibraryStore& m_store;
    ReaderServices m_services;
    std::function<void()> m_dismiss;
    TopBar* m_topBar;
    Sidebar* m_sidebar;
    ReadingSide* m_reading;
    BottomBar* m_bottomBar;
    TextSizePopover* m_textSize = nullptr; // made when it is first opened
    QPointer<SheetOverlay> m_starters;     // while they are shown
    std::optional<ReaderWindowState> m_state;
    int m_wheelTurned = 0; // in eighths of a degree, towards the next step of the text size
    std::vector<QPropertyNotifier> m_observations;
    Registration m_refreshTask;
};

}
