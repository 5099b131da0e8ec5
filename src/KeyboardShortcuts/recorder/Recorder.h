#pragma once

#include "KeyboardShortcuts/RecorderSteps.h"
#include "platform/KeyState.h"
#include "platform/KeyStrokes.h"
#include "platform/Registration.h"

#include <QLineEdit>
#include <QTimer>

#include <cstdint>
#include <optional>

namespace Quillory {

class BarButton;

// The field in which the user sets one global shortcut. While it has the keyboard it takes all keys of the desktop, so
// that also one that belongs to another program can be tried. GUI thread only.
class Recorder : public QLineEdit, private RecorderField {
    Q_OBJECT
public:
    // All outlive it.
    struct Services {
        RecorderSteps::Services steps;
        KeyStrokes& keyStrokes;
        KeyState const& keys;
    };

    // `label` is what the shortcut does, for assistive programs.
    Recorder(Services services, ShortcutName const& name, QString const& label, QWidget* parent);

    RecorderSteps& steps() { return m_steps; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    // Nothing in it can be selected or dragged.
    void mouseMoveEvent(QMouseEvent*) override { }
    void mouseReleaseEvent(QMouseEvent*) override { }
    void mouseDoubleClickEvent(QMouseEvent*) override { }

private:
    void refresh() override;
    void startMonitor() override;
    void stopMonitor() override;
    void giveUpFocus() override;
    void takeFocus() override;
    void beep() override;
    void showAlert(Alert const& alert) override;

    void leaveWindow();
    KeyStrokes::Answer take(KeyStroke const& stroke);
    KeyStrokes::Answer takeDown(KeyStroke const& stroke);
    void letKeyboardGo();
    void placeClearButton();

    Services m_services;
    QString const m_label;
    BarButton* m_clear;
    RecorderSteps m_steps;
    bool m_isWanted = false;    // the user asked for the focus that is about to come
    bool m_isLeavingByTab = false;
    // The key that is down, by its code. The one that ends the recording would repeat, and do at once what was set or
    // close the window: until it is up the keyboard stays here.
    std::optional<std::uint16_t> m_held;
    Registration m_monitor;
    QTimer m_longestGrab;
};

}
