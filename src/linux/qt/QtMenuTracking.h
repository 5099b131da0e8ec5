#pragma once

#include "platform/NotificationCenter.h"

#include <QObject>

#include <set>

namespace Quillory {

// Posts when the first menu that this program draws comes up, and when the last of them is gone.
class QtMenuTracking final : public QObject {
public:
    // Both the application object and `notifications` outlive it.
    explicit QtMenuTracking(NotificationCenter& notifications);
    ~QtMenuTracking() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    NotificationCenter& m_notifications;
    std::set<QObject*> m_open;
};

}
