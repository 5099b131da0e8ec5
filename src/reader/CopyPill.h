#pragma once

#include "platform/Executor.h"

#include <QLabel>

namespace Quillory {

// Says for a moment, at the bottom of the text, what became of a copy. The pointer passes through. GUI thread only.
class CopyPill : public QLabel {
    Q_OBJECT
public:
    // Stands within `text`, whose parent it has. The executor outlives it.
    CopyPill(Executor& executor, QWidget& text);

    // Nothing of an empty text.
    void say(QString const& text);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Executor& m_executor;
    QWidget& m_text;
    Registration m_end;
};

}
