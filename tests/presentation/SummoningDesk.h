#pragma once

#include "presentation/PresentationCoordinator.h"

#include "platform/Observers.h"
#include "platform/SessionEvents.h"
#include "support/FakeHotKeys.h"
#include "support/FakeInputPermission.h"
#include "support/FakeLibraryServices.h"
#include "support/FakeModifierEvents.h"
#include "support/FakePeekKeys.h"
#include "support/FakeStatusBar.h"
#include "support/ShortcutsOnFakes.h"

#include <initializer_list>
#include <optional>
#include <utility>

namespace Quillory {

inline constexpr std::uint64_t panelWindow = 9;
inline RunningApplication const editor { QStringLiteral("editor"), 1 };
inline RunningApplication const secondEditorWindow { QStringLiteral("editor"), 2 };
inline RunningApplication const browser { QStringLiteral("browser"), 3 };

// A panel that comes to the front of the desktop when it is shown, as the real one does. The window manager hands the
// front on as soon as it goes.
class RecordingPanel final : public PanelSurface {
public:
    explicit RecordingPanel(FakeWorkspace& workspace)
        : m_workspace(workspace)
    {
        m_workspace.open({ m_workspace.mainBundleIdentifier(), panelWindow });
    }

    void show(PanelPresence shownAs) override
    {
        calls.append(shownAs == PanelPresence::peek ? QStringLiteral("show peek") : QStringLiteral("show"));
        presence = shownAs;
        isUp = true;
        minimized = false;
        m_workspace.activateIgnoringOtherApps(panelWindow);
    }
    void makeKeyAndOrderFront() override
    {
        calls.append(QStringLiteral("makeKeyAndOrderFront"));
        m_workspace.activateIgnoringOtherApps(panelWindow);
    }
    void orderOut() override
    {
        calls.append(QStringLiteral("orderOut"));
        goAway();
    }
    bool isMinimized() const override { return minimized; }
    void savePanelFrame() override { calls.append(QStringLiteral("savePanelFrame")); }
    void focusReader() override { calls.append(QStringLiteral("focusReader")); }
    void applyPeekLevel(PanelPresence applied) override
    {
        calls.append(applied == PanelPresence::peek ? QStringLiteral("raise level") : QStringLiteral("lower level"));
        presence = applied;
    }
    void dismissTooltips() override { calls.append(QStringLiteral("dismissTooltips")); }

    void goAway()
    {
        isUp = false;
        m_workspace.hide(panelWindow);
    }

    QStringList takeCalls() { return std::exchange(calls, {}); }

    QStringList calls;
    PanelPresence presence = PanelPresence::resident;
    bool isUp = false;
    bool minimized = false; // by the user

private:
    FakeWorkspace& m_workspace;
};

struct FakeSessionEvents final : SessionEvents {
    Registration observeWillSleep(Action action) override { return willSleep.add(std::move(action)); }
    Registration observeDidWake(Action action) override { return didWake.add(std::move(action)); }
    Registration observeSessionDidResignActive(Action action) override { return resigned.add(std::move(action)); }
    Observers<void()> willSleep, didWake, resigned;
};

// A coordinator among fakes, with other programs on the desktop, the second editor window in front, and the keys that
// its user has.
class SummoningDesk {
public:
    enum class Presence { closed, resident, keyboardPeek, gesturePeek };

    static constexpr std::uint16_t toggleKey = 40, peekKey = 38, leftShift = 56, leftOption = 58;
    static constexpr auto toggleModifiers = ModifierFlags::control | ModifierFlags::option;
    static constexpr auto peekModifiers = ModifierFlags::control | ModifierFlags::command;
    static constexpr std::uint16_t leftControl = 59, leftCommand = 55; // of the peek

    SummoningDesk()
    {
        for (auto const& application : { editor, secondEditorWindow, browser })
            workspace.open(application);
        workspace.bringToFront(secondEditorWindow.window);
        services.openPanels.showWindow(panelWindow);
        store(u"toggleQuillory", { toggleKey, Shortcut::carbonModifiersOf(toggleModifiers) });
        store(u"peekQuillory", { peekKey, Shortcut::carbonModifiersOf(peekModifiers) });
        library.setModifierGesture(ModifierGesture::option);
        make();
    }

    void store(QStringView name, Shortcut const& shortcut)
    {
        services.defaults.setValue(QStringLiteral("KeyboardShortcuts_") + name.toString(), shortcut.encoded());
    }

    void make()
    {
        coordinator.reset();
        shortcuts.emplace(services.defaults, hotKeys, executor);
        coordinator.emplace(library,
            PresentationCoordinator::Services { shortcuts->shortcuts, workspace, session, events, permission, keys,
                peekKeys, executor, statusBar, updates, [this] { panel.calls.append(QStringLiteral("quit")); } },
            panel);
    }

    void pressToggle()
    {
        keys.down.insert({ toggleKey, leftControl, leftOption });
        hotKeys.press(toggleKey, toggleModifiers);
    }
    void strikeToggle()
    {
        pressToggle();
        for (auto const key : { toggleKey, leftControl, leftOption })
            keys.down.erase(key);
        hotKeys.release(toggleKey);
    }
    void pressPeek()
    {
        keys.down.insert({ peekKey, leftControl, leftCommand });
        hotKeys.press(peekKey, peekModifiers);
    }
    // The keys are let go; `releasePeek` tells it.
    void losePeekRelease()
    {
        for (auto const key : { peekKey, leftControl, leftCommand })
            keys.down.erase(key);
    }
    void releasePeek()
    {
        losePeekRelease();
        hotKeys.release(peekKey);
    }
    void tapOption()
    {
        for (auto const isDown : { true, false }) {
            isDown ? pressOption() : releaseOption();
            executor.advance(std::chrono::milliseconds(50));
        }
    }
    void pressOption() { events.press(leftOption); }
    void releaseOption() { events.release(leftOption); }
    void holdOption()
    {
        tapOption();
        pressOption();
        executor.advance(std::chrono::milliseconds(350));
    }
    void presentPicker() { library.chooseFolder(panelWindow); }

    Presence presence() const
    {
        if (coordinator->isGesturePeek())
            return Presence::gesturePeek;
        if (coordinator->isPeeking())
            return Presence::keyboardPeek;
        return coordinator->state() == PresentationState::panel ? Presence::resident : Presence::closed;
    }

    FakeLibraryServices services;
    ManualExecutor& executor = services.executor;
    FakeWorkspace& workspace = services.workspace;
    LibraryStore library { services.services(), LibraryStore::RestoreFolder::no };
    FakeHotKeys hotKeys;
    FakeSessionEvents session;
    FakeKeyState keys;
    FakePeekKeys peekKeys { keys };
    FakeInputPermission permission;
    FakeModifierEvents events { executor, keys, permission };
    RecordingPanel panel { workspace };
    FakeStatusBar statusBar;
    std::optional<MenuBarUpdates> updates;
    std::optional<ShortcutsOnFakes> shortcuts;
    std::optional<PresentationCoordinator> coordinator;
};

}
