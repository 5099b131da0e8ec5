#pragma once

#include <QString>
#include <QTextLayout>
#include <QWidget>

namespace Quillory {

// A small borderless window over `host` that shows a text in the look of its window. Takes neither the keyboard nor the
// mouse. GUI thread only.
class HoverTooltipPanel final : public QWidget {
    Q_OBJECT
public:
    // Belongs to `host`, a window. Has its size at once.
    HoverTooltipPanel(QString const& text, QWidget& host);

    QString text() const { return m_text.text(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QTextLayout m_text;
};

}
