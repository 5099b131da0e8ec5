#include "reader/text/LinkHelp.h"

#include "presentation/hover_help/HoverHelpTrackingView.h"
#include "reader/text/ReaderTextView.h"
#include "text/OneLine.h"

#include <QUrl>

namespace Quillory {

QString LinkHelp::of(QString const& link)
{
    if (link.isEmpty())
        return {};
    return ReaderTextView::tr("Opens %1").arg(oneLine(QString::fromLatin1(QUrl(link).toEncoded())));
}

LinkHelp::LinkHelp(QWidget& view)
    : m_view(view)
{
}

bool LinkHelp::hover(QString const& link, QRectF const& place)
{
    auto const help = of(link);
    if (!m_tracking && !help.isEmpty())
        m_tracking = &HoverHelpTrackingView::of(m_view);
    if (!m_tracking || help == m_tracking->text())
        return false;
    m_tracking->enterArea(place.toAlignedRect(), help);
    return true;
}

}
