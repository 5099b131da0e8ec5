#pragma once

#include "settings/MainMenu.h"
#include "settings/SettingsServices.h"
#include "support/FakeDesktopHotKeys.h"
#include "support/FakeHotKeys.h"
#include "support/FakeInputPermission.h"
#include "support/FakeKeyState.h"
#include "support/FakeKeyboardLayout.h"
#include "support/FakeLibraryServices.h"
#include "support/FakeScreens.h"
#include "support/ShortcutsOnFakes.h"

namespace Quillory {

struct NoSystemShortcuts final : SystemShortcuts {
    std::vector<SymbolicHotKey> symbolicHotKeys() const override { return {}; }
};

struct FakeKeyStrokes final : KeyStrokes {
    Registration observe(Monitor observer) override
    {
        monitor = std::move(observer);
        return Registration([this] { monitor = nullptr; });
    }
    Monitor monitor;
};

struct FakeDesktopSettings final : DesktopSettings {
    bool openKeyboardShortcuts() override
    {
        ++opened;
        return isKnown;
    }
    bool isKnown = true;
    int opened = 0;
};

struct FakeAutostart final : Autostart {
    State state() const override { return now; }
    void ask(State wanted, Answered answered) override
    {
        if (refusal.isEmpty())
            now = wanted;
        answered(refusal.isEmpty() ? std::expected<void, QString>() : std::unexpected(refusal));
    }
    State now = State::off;
    QString refusal;
};

// All that the settings window stands on, without a desktop.
struct SettingsOnFakes {
    FakeLibraryServices services;
    LibraryStore store { services.services(), LibraryStore::RestoreFolder::no };
    FakeHotKeys hotKeys;
    ShortcutsOnFakes line { services.defaults, hotKeys, services.executor };
    FakeKeyboardLayout layout { { { 40, QStringLiteral("k") } } };
    NoSystemShortcuts const systemShortcuts;
    FakeKeyStrokes keyStrokes;
    FakeKeyState keys;
    FakeScreens screens { { { 0, 0, 1600, 900 } } };
    FakeInputPermission permission;
    FakeDesktopSettings desktopSettings;
    FakeAutostart autostart;
    FakeDesktopHotKeys desktopHotKeys;
    bool hasDesktopHotKeys = false;
    std::optional<QRect> readerFrame;

    SettingsServices settings()
    {
        return { .store = store,
            .recorder = { { line.shortcuts, line.center, line.notifications, layout, systemShortcuts,
                              [](Shortcut const&) { return QStringLiteral("Ctrl+Alt+K"); }, mainMenu },
                keyStrokes, keys },
            .defaults = services.defaults,
            .workspace = services.workspace,
            .screens = screens,
            .executor = services.executor,
            .notifications = line.notifications,
            .fileOpener = services.fileOpener,
            .permission = permission,
            .desktopSettings = desktopSettings,
            .autostart = autostart,
            .desktopHotKeys = hasDesktopHotKeys ? &desktopHotKeys : nullptr,
            .versionText = QStringLiteral("Version 1.2"),
            .applicationFile = QStringLiteral("/usr/bin/quillory"),
            .readerFrame = [this] { return readerFrame; } };
    }
};

}
