#pragma once

#include <QObject>

class QWidget;

namespace Quillory {

// Leaves the wheel to the form around a control, so that scrolling changes no setting by the way. Belongs to the
// control. GUI thread only.
class WheelGuard : public QObject {
    Q_OBJECT
public:
    explicit WheelGuard(QWidget& control);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

}
