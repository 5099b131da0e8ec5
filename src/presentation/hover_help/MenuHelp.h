#pragma once

#include "platform/Registration.h"

#include <QObject>
#include <QPointer>

class QAction;
class QMenu;

namespace Quillory {

class HoverTooltipPanel;

// Shows the help of a menu's items beside the menu, when pointer or keys have rested on one. GUI thread only.
class MenuHelp final : public QObject {
    Q_OBJECT
public:
    // From then on the menu's items show their status tips. The menu lies over a window with hover help.
    static void show(QMenu& menu);
    ~MenuHelp() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit MenuHelp(QMenu& menu);

    void moveTo(QAction const& item);
    void show(QAction const& item);
    void dismiss();

    QMenu& m_menu;
    QPointer<QAction const> m_item;
    Registration m_pending;
    QPointer<HoverTooltipPanel> m_tooltip;
};

}
