#include "presentation/hover_help/MenuHelp.h"

#include "presentation/hover_help/HoverHelpHost.h"
#include "presentation/hover_help/HoverHelpTrackingView.h"
#include "presentation/hover_help/HoverTooltipPanel.h"
#include "presentation/hover_help/HoverTooltipPlace.h"

#include <QEvent>
#include <QMenu>
#include <QScreen>

namespace Quillory {

void MenuHelp::show(QMenu& menu)
{
    new MenuHelp(menu);
}

MenuHelp::MenuHelp(QMenu& menu)
    : QObject(&menu)
    , m_menu(menu)
{
    menu.installEventFilter(this);
    connect(&menu, &QMenu::hovered, this, [this](QAction const* item) { moveTo(*item); });
}

MenuHelp::~MenuHelp()
{
    dismiss();
}

void MenuHelp::moveTo(QAction const& item)
{
    if (&item == m_item)
        return;
    dismiss();
    auto const* const host = HoverHelpHost::of(m_menu);
    if (!host || item.statusTip().isEmpty())
        return;
    m_item = &item;
    m_pending = host->executor().after(HoverHelpTrackingView::delay, [this] {
        if (m_item)
            show(*m_item);
    });
}

void MenuHelp::show(QAction const& item)
{
    m_tooltip = new HoverTooltipPanel(item.statusTip(), m_menu);
    auto const place = m_menu.actionGeometry(const_cast<QAction*>(&item));
    QRect const line(m_menu.mapToGlobal(QPoint(0, place.top())), QSize(m_menu.width(), place.height()));
    auto const* const screen = m_menu.screen();
    m_tooltip->move(
        HoverTooltipPlace::besideOrigin(line, m_tooltip->size(), screen ? screen->availableGeometry() : line));
    m_tooltip->show();
}

void MenuHelp::dismiss()
{
    m_item.clear();
    m_pending.end();
    if (!m_tooltip)
        return;
    m_tooltip->hide();
    m_tooltip->deleteLater();
    m_tooltip.clear();
}

bool MenuHelp::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::Hide || event->type() == QEvent::Leave)
        dismiss();
    return false;
}

}
