#pragma once

#include "updates/UpdateController.h"

#include <QWidget>

class QCheckBox;
class QLabel;
class QProgressBar;

namespace Quillory {

// The rows of the settings that concern updates. GUI thread only.
class UpdateSettingsView final : public QWidget {
    Q_OBJECT
public:
    // The controller outlives it.
    explicit UpdateSettingsView(UpdateController& updates, QWidget* parent = nullptr);

private:
    void refresh();

    UpdateController& m_updates;
    QCheckBox* m_automatic;
    QProgressBar* m_progress;
    QLabel* m_lastCheck;
    QPropertyNotifier m_automaticChecks;
    QPropertyNotifier m_checking;
    QPropertyNotifier m_checked;
};

}
