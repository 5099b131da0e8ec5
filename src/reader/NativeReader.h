#pragma once

#include "library/LibraryStore.h"
#include "reader/ReaderTextView.h"

#include <QList>
#include <QString>

#include <optional>
#include <utility>

namespace Quillory {

// The bridge between the store and the text view: renders the sheet to show when it differs from the one shown, and
// keeps the scroll position of each sheet. GUI thread only; both must outlive it.
class NativeReader {
public:
    NativeReader(LibraryStore& store, ReaderTextView& textView);

    // Shows the sheet as it stands now. Does nothing to the text, nor to where it is scrolled, when nothing changed.
    void update(Sheet const& sheet);

private:
    // What is shown: two sheets with equal keys show the same text.
    struct DocumentKey {
        QString id;
        QString source;
        QList<std::pair<QString, quint64>> images; // reference and fingerprint
        double textSize = 0;
        bool operator==(DocumentKey const&) const = default;
    };

    DocumentKey keyOf(Sheet const& sheet) const;
    RenderedMarkdown render(Sheet const& sheet) const;
    double minimumWidth(Sheet const& sheet) const;
    void rebuild(Sheet const& sheet, DocumentKey key);

    LibraryStore& m_store;
    ReaderTextView& m_textView;
    std::optional<DocumentKey> m_key;
};

}
