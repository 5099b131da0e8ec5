#pragma once

#include "platform/Registration.h"

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QString>

#include <chrono>
#include <optional>

class QWidget;

namespace Quillory {

class HoverTooltipPanel;

// Watches the pointer over one control and shows the help after a moment, also while the control is disabled or its
// window has not got the keyboard. Takes no event from the control. Hides with the control. GUI thread only.
class HoverHelpTrackingView final : public QObject {
    Q_OBJECT
public:
    static constexpr std::chrono::milliseconds delay { 350 };

    // The control's own, made at the first call. Belongs to the control.
    static HoverHelpTrackingView& of(QWidget& control);
    ~HoverHelpTrackingView() override;

    // A help that is up shows the new text at once.
    void setText(QString const& text);
    QString const& text() const { return m_text; }

    // The pointer came to a part of the control, in its coordinates, which the text is about; an empty text when it left.
    // What the control as a whole sees is noticed without a call.
    void enterArea(QRect area, QString const& text);

    // Takes everything away, until the pointer enters the next time.
    void dismiss();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit HoverHelpTrackingView(QWidget& control);

    void mouseEntered();
    void show();
    void removeTooltip();

    QWidget& m_control;
    QString m_text;
    std::optional<QRect> m_area;
    bool m_hovered = false;
    Registration m_pending;
    QPointer<HoverTooltipPanel> m_tooltip;
};

}
