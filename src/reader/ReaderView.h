#pragma once

#include "library/LibraryStore.h"
#include "reader/ReaderCommand.h"
#include "reader/ReaderServices.h"

#include <QProperty>
#include <QWidget>

#include <functional>
#include <vector>

namespace Quillory {

class BottomBar;
class ReaderDialogs;
class ReaderKeys;
class ReaderTextView;
class ReadingSide;
class Sidebar;
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
    bool focusNextPrevChild(bool forwards) override;

private:
    void layOut();
    void connectBars();
    void observeStore();
    void refreshLater();
    void applyStyle();
    void perform(ReaderCommand command);
    void changeTextSize(double size);
    void searchLibrary();
    void openFind();
    void closeFind();

    LibraryStore& m_store;
    ReaderServices m_services;
    std::function<void()> m_dismiss;
    TopBar* m_topBar;
    Sidebar* m_sidebar;
    ReadingSide* m_reading;
    BottomBar* m_bottomBar;
    ReaderDialogs* m_dialogs;
    ReaderKeys* m_keys;
    double m_shownTextSize = 0; // points
    std::vector<QPropertyNotifier> m_observations;
    Registration m_refreshTask;
};

}
