#include "settings/SettingsView.h"

#include "settings/AboutSection.h"
#include "settings/FolderSection.h"
#include "settings/GestureSection.h"
#include "settings/PinSection.h"
#include "settings/ReaderSection.h"
#include "settings/ShortcutSection.h"
#include "settings/StartSection.h"

#include <QVBoxLayout>

#include <utility>

namespace Quillory {

namespace {

constexpr int padding = 20; // points
constexpr int gap = 20;

}

SettingsView::SettingsView(SettingsServices const& services, QWidget* parent)
    : QWidget(parent)
    , m_services(services)
    , m_folder(new FolderSection(services.store, this))
    , m_shortcuts(new ShortcutSection(
          services.recorder, [this] { m_services.desktopHotKeys->askAgain(); }, this))
    , m_gesture(new GestureSection(services.store,
          {
              .setUp = [this] { setUpMonitoring(); },
              .showApplication = [this] { m_services.fileOpener.reveal(m_services.applicationFile); },
              .checkAgain = [this] { changeGestureAccess(); },
          },
          this))
    , m_pins(new PinSection(services.store, this))
    , m_reader(new ReaderSection(services.store, this))
{
    auto* const updates = services.makeUpdates ? services.makeUpdates(this) : nullptr;
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(padding, padding, padding, padding);
    rows->setSpacing(gap);
    for (QWidget* const section : std::initializer_list<QWidget*> { m_folder, m_shortcuts, m_gesture, m_pins, m_reader,
             new StartSection(services.autostart, services.store, this),
             new AboutSection(updates, services.versionText, this) })
        rows->addWidget(section);
    rows->addStretch();
    observe();
    refresh();
}

void SettingsView::observe()
{
    auto& store = m_services.store;
    auto const follow = [this](auto&... properties) {
        (m_observations.push_back(properties.addNotifier([this] { refreshLater(); })), ...);
    };
    follow(store.folder, store.filePanel, store.modifierGesture, store.gesturePermissionGranted, store.pinnedIDs,
        store.sheets, store.learningModeEnabled, store.textSize, store.keyNames);
    m_shortcutChanges = m_services.notifications.observe(
        ShortcutStorage::shortcutByNameDidChange(), [this](auto const&) { refreshLater(); });
    if (m_services.desktopHotKeys)
        m_desktopChanges = m_services.desktopHotKeys->observeChanges([this] { refreshLater(); });
}

// One that nobody sees catches up when it is shown.
void SettingsView::refreshLater()
{
    if (isVisible() && !m_refreshTask.isActive())
        m_refreshTask = m_services.executor.post([this] { refresh(); });
}

void SettingsView::refresh()
{
    m_refreshTask.end();
    auto const state = SettingsState::of(m_services);
    if (std::exchange(m_shown, state) == state)
        return;
    m_folder->refresh(state);
    m_shortcuts->refresh(state);
    m_gesture->refresh(state);
    m_pins->refresh(state);
    m_reader->refresh(state);
}

void SettingsView::showEvent(QShowEvent* event)
{
    refresh();
    QWidget::showEvent(event);
}

// Asked for, then looked at, then shown where the user can do something about it.
void SettingsView::setUpMonitoring()
{
    m_services.permission.requestListenAccess();
    changeGestureAccess();
    if (!m_services.desktopSettings.openKeyboardShortcuts())
        m_services.store.showMessage(
            tr("This desktop has no keyboard settings that Quillory knows. Any desktop can bind a key of its own to "
               "“quillory --toggle”."));
}

void SettingsView::changeGestureAccess()
{
    if (auto const& changed = m_services.store.modifierGestureChanged)
        changed();
}

}
