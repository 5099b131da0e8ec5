#pragma once

#include <QCheckBox>

namespace Quillory {

// A row with a box to check, drawn so that the box is seen in every palette. GUI thread only.
class CheckRow : public QCheckBox {
    Q_OBJECT
public:
    CheckRow(QString const& text, QWidget* parent);

    QSize sizeHint() const override;

protected:
    bool hitButton(QPoint const& point) const override;
    void paintEvent(QPaintEvent* event) override;

private:
    int rowHeight() const;
};

}
