#pragma once

#include <QWidget>

namespace Quillory {

// A triangle with an exclamation mark, in the warning colour and as high as a line. GUI thread only.
class WarningSign : public QWidget {
    Q_OBJECT
public:
    explicit WarningSign(QWidget* parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

}
