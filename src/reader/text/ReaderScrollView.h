#pragma once

#include "reader/text/ReaderTextView.h"

#include <QAbstractScrollArea>

namespace Quillory {

// Hosts the text view as its viewport, with bars that say where in the text it is. GUI thread only.
class ReaderScrollView : public QAbstractScrollArea {
    Q_OBJECT
public:
    // Executor and clipboard outlive the view.
    ReaderScrollView(Executor& executor, Clipboard& clipboard, QWidget* parent = nullptr);

    ReaderTextView& textView() const { return *m_textView; }

protected:
    bool viewportEvent(QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    void updateScrollBars();

    ReaderTextView* m_textView;
    bool m_settingBars = false;
};

}
