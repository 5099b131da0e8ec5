#pragma once

#include "settings/SettingsServices.h"
#include "settings/SettingsState.h"

#include <QWidget>

#include <optional>
#include <vector>

namespace Quillory {

class FolderSection;
class GestureSection;
class PinSection;
class ReaderSection;
class ShortcutSection;

// The form of all settings. Follows the store and the stored shortcuts; several changes of one turn of the event loop
// cost one refresh. GUI thread only.
class SettingsView : public QWidget {
    Q_OBJECT
public:
    SettingsView(SettingsServices const& services, QWidget* parent);

    // Takes over now what has changed, instead of in a later turn.
    void refresh();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void observe();
    void refreshLater();
    void setUpMonitoring();
    void changeGestureAccess();

    SettingsServices const m_services;
    FolderSection* m_folder;
    ShortcutSection* m_shortcuts;
    GestureSection* m_gesture;
    PinSection* m_pins;
    ReaderSection* m_reader;
    std::optional<SettingsState> m_shown;
    std::vector<QPropertyNotifier> m_observations;
    Registration m_shortcutChanges;
    Registration m_desktopChanges;
    Registration m_refreshTask;
};

}
