#pragma once

#include "library/LibraryStore.h"

#include <QLineEdit>

namespace Quillory {

// The field in which the library is searched: results follow each key. GUI thread only.
class LibrarySearchField : public QLineEdit {
    Q_OBJECT
public:
    // The store outlives the field.
    explicit LibrarySearchField(LibraryStore& store, QWidget* parent);

    // Takes over the store's query.
    void refresh();

    // Goes on with a key that was pressed elsewhere, at the end of the query.
    void type(QKeyEvent* event);

Q_SIGNALS:
    // Return, where there is something to read.
    void accepted();

protected:
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void takeColors();

    LibraryStore& m_store;
};

}
