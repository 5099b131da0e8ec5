#pragma once

#include "settings/SettingsWindow.h"
#include "support/SettingsOnFakes.h"

#include <QImage>

#include <expected>

namespace Quillory {

// The settings window over a folder, brought into a state by steps.
class SettingsPicture {
public:
    explicit SettingsPicture(QString const& folder);

    // `press NAME` clicks a button by its accessible name; `gesture option`, `allow` what the gesture needs,
    // `shortcuts` to set both to the same, `pin SHEET`. The error is a sentence.
    std::expected<void, QString> take(QString const& step);

    // Without a height all of the form.
    QImage draw(QSize size);

private:
    SettingsOnFakes m_desk;
    SettingsWindow m_window { m_desk.settings() };
};

}
