#pragma once

#include <QRectF>
#include <QString>

class QWidget;

namespace Quillory {

class HoverHelpTrackingView;

// Says where a link leads before it is followed. GUI thread only.
class LinkHelp {
public:
    // As the browser will get it: letters that only look like others are spelled out. Empty without a link.
    static QString of(QString const& link);

    // The view, over whose parts the help shows, outlives it.
    explicit LinkHelp(QWidget& view);

    // The pointer came to the link, at this place of the view, or to no link. False when that is known.
    bool hover(QString const& link, QRectF const& place);

private:
    QWidget& m_view;
    HoverHelpTrackingView* m_tracking = nullptr; // made with the first link
};

}
