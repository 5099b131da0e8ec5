#pragma once

#include "reader/BarButton.h"
#include "reader/ReaderWindowState.h"

#include <QWidget>

#include <functional>

namespace Quillory {

// The program's name, what sets the reader up, and a button that closes the window. GUI thread only.
class TopBar : public QWidget {
    Q_OBJECT
public:
    // The store outlives the bar. Without `openSettings` there are no settings to open.
    TopBar(LibraryStore& store, std::function<void()> openSettings, QWidget* parent);

    void refresh(ReaderWindowState const& state);

    // The text size button, for what hangs from it.
    BarButton& textSize() const { return *m_textSize; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    LibraryStore& m_store;
    BarButton* m_textSize;
    BarButton* m_learningMode;
    BarButton* m_pin;
};

}
