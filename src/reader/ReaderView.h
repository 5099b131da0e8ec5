#pragma once

#include "library/LibraryStore.h"
#include "reader/NativeReader.h"

#include <QProperty>
#include <QWidget>

#include <functional>
#include <vector>

class QLabel;
class QPushButton;

namespace Quillory {

class SheetList;

// The whole content of the reader panel: a top bar, the sidebar of sheets and the selected sheet with its banners.
// Follows the store; several changes of one turn of the event loop cost one refresh. GUI thread only.
class ReaderView : public QWidget {
    Q_OBJECT
public:
    // The store outlives the view; `dismiss` closes the reader.
    ReaderView(LibraryStore& store, std::function<void()> dismiss, QWidget* parent = nullptr);
    ~ReaderView() override;

    // The bar by which the window around it can be dragged.
    QWidget* topBar() const { return m_topBar; }
    ReaderTextView* textView() const { return &m_reader->scrollView().textView(); }

    // Leaves what the user did in the view itself, for the next time that it is called up.
    void startAfresh();

    // Takes over now what has changed, instead of in a later turn.
    void refresh();

protected:
    void changeEvent(QEvent* event) override;

private:
    QWidget* makeTopBar();
    QWidget* makeSidebar();
    QWidget* makeReadingSide();
    QWidget* makeEmptyState(QWidget* parent);
    void observeStore();
    void refreshLater();
    void refreshBanners(Sheet const* sheet);
    void applyColors();

    LibraryStore& m_store;
    std::function<void()> m_dismiss;
    QWidget* m_topBar;
    SheetList* m_list = nullptr;
    QLabel* m_title = nullptr;
    QWidget* m_messageBar = nullptr;
    QLabel* m_message = nullptr;
    QLabel* m_error = nullptr;
    QWidget* m_emptyState = nullptr;
    QLabel* m_emptyText = nullptr;
    QPushButton* m_chooseFolder = nullptr;
    std::unique_ptr<NativeReader> m_reader;
    std::vector<QPropertyNotifier> m_observations;
    bool m_isRefreshDue = false;
};

}
