#pragma once

#include "KeyboardShortcuts/DesktopWishes.h"
#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "library/LibraryStore.h"
#include "platform/ApplicationInstance.h"
#include "platform/StatusBar.h"
#include "presentation/PresentationCoordinator.h"
#include "presentation/ReaderPanel.h"
#include "presentation/SheetRequests.h"
#include "presentation/TakenShortcuts.h"
#include "settings/SettingsWindow.h"
#include "settings/StartOffer.h"
#include "updates/UpdateController.h"

#include <memory>
#include <optional>

namespace Quillory {

// Owns the program's long-lived objects. Main thread only; all services outlive it.
class AppDelegate {
public:
    // What opens by itself at the start.
    enum class FirstWindow { readerWithoutFolder, none };

    struct Services {
        LibraryStore::Services library;
        ShortcutStorage& shortcuts;
        HotKeys& hotKeys;
        DesktopHotKeys* desktopHotKeys = nullptr; // where the desktop may bind the keys
        LocalKeyEvents& localKeyEvents;
        NotificationCenter& notifications;
        SessionEvents& session;
        ModifierEvents& modifierEvents;
        InputPermission& permission;
        KeyState const& keys;
        PeekKeys const& peekKeys;
        KeyStrokes& keyStrokes;
        KeyboardLayout& keyboardLayout;
        SystemShortcuts const& systemShortcuts;
        DesktopSettings& desktopSettings;
        Autostart& autostart;
        FirstWindow firstWindow = FirstWindow::readerWithoutFolder;
        Screens& screens;
        Compositing& compositing;
        MakePanelWindow makePanelWindow;
        StatusBar& statusBar;
        ApplicationInstance& instance;
        QString applicationFile;
        std::function<void()> quit;
        std::function<QStringList()> howToCall; // one sentence for each shortcut, as it is stored now
        std::function<QString(Shortcut const&)> inWords;
        std::function<void(QString const&)> log;
        Updater::Make makeUpdater; // empty where no updates are looked for
        // When the user asked for what another process passed on, as a server time; absent for now.
        std::function<void(std::optional<std::uint32_t>)> noteUserTime;
    };

    // Restores the folder, starts the first load, and then the updater.
    explicit AppDelegate(Services services);

    // Binds the keys. Without a folder the reader opens by itself, unless nothing is to.
    void applicationDidFinishLaunching();

    // The program was started again, or called up by the desktop. The reader ends in front of the user: one that is up
    // may be covered, minimized, or on another workspace or screen.
    void applicationShouldHandleReopen();

    // Brings the one settings window to the front, beside the reader if that is up.
    void showSettings();

    // In the reader, until it is dismissed.
    void showMessage(QString const& sentence) { m_store.showMessage(sentence); }

    void applicationWillTerminate();

private:
    void bindPanel();
    std::optional<MenuBarUpdates> menuBarUpdates();
    std::function<QWidget*(QWidget* parent)> updatesRows();
    void serve(ApplicationInstance::Request const& request, ApplicationInstance::Answer const& answer);

    Services m_services;
    LibraryStore m_store;
    std::optional<UpdateController> m_updates; // absent where no updates are looked for
    HotKeyCenter m_hotKeyCenter;
    KeyboardShortcuts m_shortcuts;
    std::unique_ptr<ReaderPanel> m_panel;
    std::optional<PresentationCoordinator> m_presentation;
    std::optional<SheetRequests> m_sheetRequests;
    std::optional<TakenShortcuts> m_takenShortcuts;
    std::optional<DesktopWishes> m_desktopWishes;
    std::optional<StartOffer> m_startOffer;
    std::unique_ptr<SettingsWindow> m_settings; // from the first time that it is asked for
    Registration m_startTask;
    Registration m_settingsTask;
    Registration m_requests;
};

}
