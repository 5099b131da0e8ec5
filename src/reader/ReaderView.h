#pragma once

#include "library/LibraryStore.h"
#include "reader/NativeReader.h"
#include "reader/ReaderServices.h"

#include <QProperty>
#include <QWidget>

#include <functional>
#include <vector>

class QLabel;

namespace Quillory {

class EmptyState;
class MessageBar;
class Sidebar;
class TopBar;

// The whole content of the reader panel: a top bar, the sidebar of sheets and the selected sheet with its banners.
// Follows the store; several changes of one turn of the event loop cost one refresh. GUI thread only.
class ReaderView : public QWidget {
    Q_OBJECT
public:
    // The store outlives the view; `dismiss` closes the reader.
    ReaderView(LibraryStore& store, ReaderServices services, std::function<void()> dismiss, QWidget* parent = nullptr);
    ~ReaderView() override;

    // The bar by which the window around it can be dragged.
    QWidget* topBar() const;
    ReaderTextView* textView() const { return &m_reader->scrollView().textView(); }

    // Leaves what the user did in the view itself, for the next time that it is called up.
    void startAfresh();

    // Takes over now what has changed, instead of in a later turn.
    void refresh();

protected:
    void changeEvent(QEvent* event) override;

private:
    QWidget* makeReadingSide(std::function<void()> dismiss);
    void observeStore();
    void refreshLater();
    void refreshError(Sheet const* sheet);
    void applyColors();

    LibraryStore& m_store;
    ReaderServices m_services;
    TopBar* m_topBar;
    Sidebar* m_sidebar;
    QLabel* m_title = nullptr;
    MessageBar* m_message = nullptr;
    QLabel* m_error = nullptr;
    EmptyState* m_emptyState = nullptr;
    std::unique_ptr<NativeReader> m_reader;
    std::vector<QPropertyNotifier> m_observations;
    Registration m_refreshTask;
};

}
