#pragma once

#include "linux/x11/X11Clock.h"

#include <QObject>

namespace Quillory {

// Notes when the user last pressed a key or a button in a window of ours: what follows from it is then no window that
// pushes itself to the front. Watches the application for as long as it lives.
class UserTimes final : public QObject {
public:
    // The clock outlives it.
    explicit UserTimes(X11Clock& clock);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    X11Clock& m_clock;
};

}
