#pragma once

#include "settings/SettingsState.h"

#include <QWidget>

#include <functional>

namespace Quillory {

class BarButton;

// One pinned sheet. GUI thread only.
class PinRow : public QWidget {
    Q_OBJECT
public:
    PinRow(SettingsState::Pin const& pin, std::function<void()> unpin, QWidget* parent);

    BarButton& button() { return *m_unpin; }

private:
    BarButton* m_unpin;
};

}
