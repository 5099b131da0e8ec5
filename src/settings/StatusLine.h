#pragma once

#include <QWidget>

class QLabel;

namespace Quillory {

// A line of text that begins with a symbol. GUI thread only.
class StatusLine : public QWidget {
    Q_OBJECT
public:
    StatusLine(QString symbol, QString const& text, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString const m_symbol;
    QLabel* m_text;
};

}
