#pragma once

#include "library/PreparedImage.h"
#include "library/ShortcutSheet.h"
#include "reader/text/ReaderTextView.h"
#include "rendering/PreparedShortcuts.h"

#include <QAbstractScrollArea>
#include <QMap>

#include <optional>

namespace Quillory {

// Hosts the text view and keeps the text's widths right: as wide as there is room, and for code no narrower than it needs,
// which then scrolls sideways. A structured sheet is rendered again for each width. GUI thread only.
class ReaderScrollView : public QAbstractScrollArea {
    Q_OBJECT
public:
    double minimumCodeWidth = 330; // points; code is never laid out narrower
    std::optional<ShortcutSheet> shortcuts; // present for a structured sheet
    QMap<QString, PreparedImage> images; // of that sheet, by the icon as written
    double textSize = 14; // points

    // The executor outlives the view.
    explicit ReaderScrollView(Executor& executor, QWidget* parent = nullptr);

    ReaderTextView& textView() const { return *m_textView; }
    double contentWidth() const { return viewport()->width(); }
    // The width that a structured sheet is rendered for, and those that text is laid out for.
    double structuredWidth() const;
    TextWidths textWidths() const;
    RenderedMarkdown renderedShortcuts();

    // Brings the text's widths up to date.
    void layOutText();

protected:
    bool viewportEvent(QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void changeEvent(QEvent* event) override;

private:
    void updateScrollBars();

    ReaderTextView* m_textView;
    bool m_settingBars = false;
    // What a window that is resized renders at every step.
    struct Prepared {
        ShortcutSheet sheet;
        QMap<QString, PreparedImage> images;
        double textSize = 0;
        FontSet fonts;
        PreparedShortcuts shortcuts;
    };
    std::optional<Prepared> m_prepared;
};

}
