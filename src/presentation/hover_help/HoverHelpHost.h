#pragma once

#include "platform/Executor.h"
#include "platform/NotificationCenter.h"

#include <QObject>
#include <QPointer>

class QWidget;

namespace Quillory {

class HoverHelpTrackingView;

// What the hover help of all controls below a widget shares: waiting, whether a menu is open, and that only one is at
// work. Controls look for it when the pointer comes, so that making one costs nothing. GUI thread only.
class HoverHelpHost final : public QObject {
    Q_OBJECT
public:
    // Belongs to `root`. Executor and notifications outlive it.
    HoverHelpHost(QWidget& root, Executor& executor, NotificationCenter& notifications);

    // The nearest above the control, null when there is none.
    static HoverHelpHost* of(QWidget const& control);

    Executor& executor() const { return m_executor; }
    bool menuIsTracking() const { return m_menuIsTracking; }

    // The pointer is on `view`: any other one is dismissed.
    void makeActive(HoverHelpTrackingView& view);

private:
    void menuDidBeginTracking();

    Executor& m_executor;
    bool m_menuIsTracking = false;
    QPointer<HoverHelpTrackingView> m_active;
    Registration m_menuBegins;
    Registration m_menuEnds;
};

}
