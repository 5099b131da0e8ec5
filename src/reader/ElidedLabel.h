#pragma once

#include <QLabel>

namespace Quillory {

// One line of text that ends in "…" where there is no room for all of it, and is then whole as hover help. Asks for no
// width. GUI thread only.
class ElidedLabel : public QLabel {
    Q_OBJECT
public:
    explicit ElidedLabel(QWidget* parent);

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString elided() const;
};

}
