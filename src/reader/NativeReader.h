#pragma once

#include "library/LibraryStore.h"
#include "reader/DocumentKey.h"
#include "reader/ReaderServices.h"
#include "reader/text/ReaderScrollView.h"
#include "rendering/RenderedMarkdown.h"

#include <QHash>
#include <QProperty>
#include <QString>

#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace Quillory {

// The bridge between the store and the text view: takes the store's state over, renders the sheet to show when it differs
// from the one shown, keeps the scroll position of each sheet, and serves find requests. GUI thread only.
class NativeReader {
public:
    // Characters of the documents that are kept next to the one shown, so that a sheet seen before costs no rendering.
    static constexpr qsizetype mostKept = 4'000'000;

    // The store outlives the reader; `dismiss` closes it.
    NativeReader(
        LibraryStore& store, ReaderServices const& services, std::function<void()> dismiss, QWidget* parent = nullptr);
    ~NativeReader();
    NativeReader(NativeReader const&) = delete;
    NativeReader& operator=(NativeReader const&) = delete;

    // Belongs to its parent.
    ReaderScrollView& scrollView() const { return *m_scrollView; }

    // Called before bars change for the sheet that is shown next: the place in the one that is left is as it is now.
    void prepareFor(Sheet const& next);

    // Called for every change of what the reader observes. Does nothing to the text, nor to where it is scrolled, when the
    // sheet's text, pictures and text size are the same.
    void update(Sheet const& sheet);

    // Leaves what the user did in the text, and serves find again, as a reader that was just made would.
    void startAfresh();

private:
    // A document that isn't shown now.
    struct Kept {
        DocumentKey key;
        std::unique_ptr<ReaderDocument> document;
    };
    // A sheet that is rendered, with the width in points that its code asks for. Made on any thread.
    struct Rendering {
        Rendering(RenderedMarkdown made, double textSize);

        RenderedMarkdown rendered;
        double codeWidth;
    };
    // A long sheet shows its beginning first, and is whole some milliseconds later.
    struct Made {
        std::unique_ptr<ReaderDocument> document;
        bool isWhole = true;
    };
    // Of the sheet that is shown, which a worker renders.
    struct Change {
        std::optional<DocumentKey> key;
        Registration task;
    };
    // The line at the top when a position was stored: exact where a point is only as exact as estimated heights.
    struct Place {
        DocumentKey key;
        TextWidths widths;
        QPointF point;
        TextAnchor anchor;
    };

    ReaderTextView& textView() const { return m_scrollView->textView(); }
    DocumentKey keyOf(Sheet const& sheet) const;
    bool isChangeRendered(Sheet const& sheet, DocumentKey const& key);
    void rebuild(Sheet const& sheet, DocumentKey const& key, std::optional<Rendering> rendering = {});
    Made documentFor(Sheet const& sheet, DocumentKey const& key);
    std::unique_ptr<ReaderDocument> makeDocument(Rendering rendering) const;
    std::function<Rendering()> renderingOf(Sheet const& sheet) const;
    void completeLater(Sheet const& sheet);
    void keep(Kept kept);
    void storePlace();
    void restorePlace(QString const& id);
    void serveFind();
    void forgetFolder();

    LibraryStore& m_store;
    Executor& m_executor;
    ReaderScrollView* m_scrollView;
    std::optional<DocumentKey> m_documentKey; // of what is shown
    int m_lastFindRequest = -1; // already served
    QString m_lastFindQuery;
    std::deque<Kept> m_kept; // the latest first
    QHash<QString, Place> m_places; // by sheet id
    bool m_isPlaceStored = false; // of what is shown, which is about to go
    Registration m_statusTask;
    Registration m_restTask; // of a sheet whose beginning is shown
    bool m_awaitsPlace = false; // the beginning is shown until the place further down is there
    Change m_change;
    QPropertyNotifier m_folderObservation;
};

}
