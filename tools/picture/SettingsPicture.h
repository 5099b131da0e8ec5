#pragma once

#include "settings/SettingsWindow.h"
#include "support/SettingsOnFakes.h"

#include <QImage>

#include <expected>
#include <memory>

namespace Quillory {

// The settings window over a folder, brought into a state by steps.
class SettingsPicture {
public:
    explicit SettingsPicture(QString const& folder);

    // `press NAME` clicks a button by its accessible name; `gesture option`, `allow` what the gesture needs,
    // `shortcuts` to set both to the same, `pin SHEET`, `wayland bound|refused|unavailable [KEYS]` for a session
    // where the desktop binds KEYS to the toggle, as a first step. The error is a sentence.
    std::expected<void, QString> take(QString const& step);

    // Without a height all of the form.
    QImage draw(QSize size);

private:
    void becomeWayland(QString const& binding);

    SettingsOnFakes m_desk;
    std::unique_ptr<SettingsWindow> m_window = std::make_unique<SettingsWindow>(m_desk.settings());
};

}
