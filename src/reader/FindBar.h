#pragma once

#include "library/LibraryStore.h"
#include "reader/ReaderWindowState.h"

#include <QWidget>

class QGridLayout;
class QLabel;
class QLineEdit;

namespace Quillory {

class BarButton;

// Looks for a text in the sheet on show. Hidden until it is asked for. GUI thread only.
class FindBar : public QWidget {
    Q_OBJECT
public:
    // The store outlives the bar.
    FindBar(LibraryStore& store, QWidget* parent);

    void refresh(ReaderWindowState const& state);

    // Puts the keyboard on the field, with its text selected.
    void takeKeyboard();

Q_SIGNALS:
    void queryEdited(QString const& query);
    void closed();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void placeStatus();

    LibraryStore& m_store;
    QLineEdit* m_field;
    QLabel* m_status;
    QList<BarButton*> m_buttons;
    QGridLayout* m_row;
};

}
