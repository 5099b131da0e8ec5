#include "presentation/PanelCorners.h"

#include "presentation/PanelShadow.h"
#include "reader/WindowColors.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>

namespace Quillory {

namespace {

class PanelCorner final : public QWidget {
public:
    PanelCorner(Qt::Corner corner, QWidget* parent)
        : QWidget(parent)
        , m_isRight(corner == Qt::TopRightCorner || corner == Qt::BottomRightCorner)
        , m_isBottom(corner == Qt::BottomLeftCorner || corner == Qt::BottomRightCorner)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFixedSize(PanelCorners::radius, PanelCorners::radius);
        hide();
    }

    void place()
    {
        auto const panel = parentWidget()->contentsRect();
        move(m_isRight ? panel.right() + 1 - width() : panel.left(),
            m_isBottom ? panel.bottom() + 1 - height() : panel.top());
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        constexpr double radius = PanelCorners::radius;
        QPointF const center(m_isRight ? 0 : radius, m_isBottom ? 0 : radius);
        QPainterPath outside, inside;
        outside.addRect(rect());
        inside.addEllipse(center, radius, radius);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
        painter.fillPath(outside - inside, Qt::black);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.setPen(QPen(WindowColors::fromPalette(palette()).outline, 1));
        painter.drawEllipse(center, radius - 0.5, radius - 0.5);
        if (parentWidget()->contentsMargins().isNull())
            return;
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
        PanelShadow::paint(painter, parentWidget()->contentsRect().translated(-pos()));
    }

private:
    bool m_isRight;
    bool m_isBottom;
};

}

PanelCorners::PanelCorners(QWidget& window)
    : QObject(&window)
    , m_window(window)
{
    for (auto const corner : { Qt::TopLeftCorner, Qt::TopRightCorner, Qt::BottomLeftCorner, Qt::BottomRightCorner })
        m_corners.append(new PanelCorner(corner, &window));
    place();
    window.installEventFilter(this);
}

void PanelCorners::setVisible(bool isVisible)
{
    for (auto* const corner : m_corners)
        corner->setVisible(isVisible);
}

void PanelCorners::place()
{
    for (auto* const corner : m_corners)
        static_cast<PanelCorner*>(corner)->place();
}

bool PanelCorners::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::ContentsRectChange)
        place();
    return false;
}

}
