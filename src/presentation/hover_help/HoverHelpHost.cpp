#include "presentation/hover_help/HoverHelpHost.h"

#include "presentation/hover_help/HoverHelpTrackingView.h"

#include <QWidget>

namespace Quillory {

HoverHelpHost::HoverHelpHost(QWidget& root, Executor& executor, NotificationCenter& notifications)
    : QObject(&root)
    , m_executor(executor)
    , m_menuBegins(notifications.observe(
          NotificationCenter::menuDidBeginTracking(), [this](auto const&) { menuDidBeginTracking(); }))
    , m_menuEnds(notifications.observe(
          NotificationCenter::menuDidEndTracking(), [this](auto const&) { m_menuIsTracking = false; }))
{
}

HoverHelpHost* HoverHelpHost::of(QWidget const& control)
{
    for (auto const* widget = &control; widget; widget = widget->parentWidget()) {
        if (auto* const host = widget->findChild<HoverHelpHost*>({}, Qt::FindDirectChildrenOnly))
            return host;
    }
    return nullptr;
}

void HoverHelpHost::makeActive(HoverHelpTrackingView& view)
{
    if (m_active && m_active != &view)
        m_active->dismiss();
    m_active = &view;
}

void HoverHelpHost::menuDidBeginTracking()
{
    m_menuIsTracking = true;
    if (m_active)
        m_active->dismiss();
}

}
