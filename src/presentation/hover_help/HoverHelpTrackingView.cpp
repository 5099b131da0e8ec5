#include "presentation/hover_help/HoverHelpTrackingView.h"

#include "presentation/hover_help/HoverHelpHost.h"
#include "presentation/hover_help/HoverTooltipPanel.h"
#include "presentation/hover_help/HoverTooltipPlace.h"

#include <QEvent>
#include <QScreen>
#include <QWidget>

namespace Quillory {

HoverHelpTrackingView& HoverHelpTrackingView::of(QWidget& control)
{
    auto* const known = control.findChild<HoverHelpTrackingView*>({}, Qt::FindDirectChildrenOnly);
    return known ? *known : *new HoverHelpTrackingView(control);
}

HoverHelpTrackingView::HoverHelpTrackingView(QWidget& control)
    : QObject(&control)
    , m_control(control)
{
    setObjectName(QStringLiteral("QuilloryHoverHelp"));
    control.installEventFilter(this);
}

HoverHelpTrackingView::~HoverHelpTrackingView()
{
    removeTooltip();
}

void HoverHelpTrackingView::setText(QString const& text)
{
    if (text == m_text)
        return;
    m_text = text;
    if (m_tooltip)
        show();
}

void HoverHelpTrackingView::enterArea(QRect area, QString const& text)
{
    dismiss();
    m_text = text;
    m_area = area;
    if (!text.isEmpty())
        mouseEntered();
}

void HoverHelpTrackingView::mouseEntered()
{
    auto* const host = HoverHelpHost::of(m_control);
    if (!host || host->menuIsTracking())
        return;
    host->makeActive(*this);
    m_hovered = true;
    m_pending = host->executor().after(delay, [this] {
        if (m_hovered)
            show();
    });
}

void HoverHelpTrackingView::dismiss()
{
    m_hovered = false;
    m_pending.end();
    removeTooltip();
}

void HoverHelpTrackingView::removeTooltip()
{
    if (!m_tooltip)
        return;
    // It belongs to the window, which may be walking through what it has in order to hide it.
    m_tooltip->hide();
    m_tooltip->deleteLater();
    m_tooltip.clear();
}

void HoverHelpTrackingView::show()
{
    removeTooltip();
    auto* const window = m_control.window();
    auto const* const host = HoverHelpHost::of(m_control);
    if (!m_hovered || !host || host->menuIsTracking() || m_text.isEmpty() || !window->isVisible())
        return;
    m_tooltip = new HoverTooltipPanel(m_text, *window);
    auto const area = m_area.value_or(m_control.rect());
    QRect const anchor(m_control.mapToGlobal(area.topLeft()), area.size());
    auto const* const screen = window->screen();
    auto const visible = screen ? screen->availableGeometry() : anchor;
    m_tooltip->move(HoverTooltipPlace::origin(anchor, m_tooltip->size(), visible));
    m_tooltip->show();
}

bool HoverHelpTrackingView::eventFilter(QObject*, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Enter:
        mouseEntered();
        break;
    case QEvent::Leave:
    case QEvent::Hide:
    case QEvent::ParentChange:
        dismiss();
        break;
    default:
        break;
    }
    return false;
}

}
