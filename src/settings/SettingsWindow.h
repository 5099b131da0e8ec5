#pragma once

#include "settings/SettingsServices.h"

#include <QPointer>
#include <QWidget>

class QScrollArea;

namespace Quillory {

class SettingsView;

// The window of the settings, an ordinary one. It keeps its size across runs and comes up on the reader's screen.
// GUI thread only.
class SettingsWindow : public QWidget {
    Q_OBJECT
public:
    static constexpr QLatin1StringView frameKey { "settingsWindowFrame" };

    explicit SettingsWindow(SettingsServices services);

    // Shows it, or brings the one that is up to the front, with the keyboard.
    void bringToFront();

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool forwards) override;

private:
    void applyStyle();
    void place();
    void setLeastSize();
    void followFilePanel();

    SettingsServices const m_services;
    SettingsView* m_view;
    QScrollArea* m_scroll;
    QPointer<QWidget> m_lastStop; // where Tab goes on from when nothing has the keyboard
    bool m_hasFilePanel = false;
    QPropertyNotifier m_filePanels;
    Registration m_frontTask;
};

}
