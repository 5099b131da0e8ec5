#include "settings/SettingsState.h"

#include "text/OneLine.h"
#include "text/TextOrder.h"

#include <QFileInfo>

#include <algorithm>

namespace Quillory {

namespace {

QString titleOf(QString const& pin, QList<Sheet> const& sheets)
{
    auto const sheet = std::ranges::find_if(sheets, [&](Sheet const& each) { return canonicallyEqual(each.id, pin); });
    return sheet == sheets.end() ? SettingsState::tr("%1 (unavailable)").arg(oneLine(pin)) : oneLine(sheet->title);
}

QString keyOf(ModifierGesture gesture)
{
    return gesture == ModifierGesture::shift ? SettingsState::tr("Shift") : SettingsState::tr("Option");
}

SettingsState::Gesture gestureState(LibraryStore const& store, InputPermission const& permission)
{
    using enum SettingsState::Gesture;
    if (!permission.canBeGranted())
        return impossible;
    if (store.modifierGesture == ModifierGesture::off)
        return off;
    return store.gesturePermissionGranted ? allowed : setupNeeded;
}

// Desktops word keys in their own ways, which only sometimes mean other keys.
bool isSameKeys(QString const& trigger, QString const& keys)
{
    auto const plain = [](QString text) {
        return text.toLower().remove(u' ').replace(QLatin1StringView("meta"), QLatin1StringView("super"));
    };
    return plain(trigger) == plain(keys);
}

QString bindingText(SettingsServices const& services, ShortcutName const& name)
{
    auto const& steps = services.recorder.steps;
    auto const shortcut = steps.shortcuts.getShortcut(name);
    if (!shortcut || !services.desktopHotKeys || services.desktopHotKeys->state() != DesktopHotKeys::State::bound)
        return {};
    auto const trigger = services.desktopHotKeys->trigger(name.rawValue);
    if (trigger.isEmpty())
        return SettingsState::tr("Your desktop has bound no keys to this.");
    return isSameKeys(trigger, steps.text(*shortcut))
        ? QString()
        : SettingsState::tr("Your desktop has bound this to %1.").arg(oneLine(trigger));
}

QString desktopKeysText(DesktopHotKeys::State state)
{
    switch (state) {
    case DesktopHotKeys::State::asking:
        return SettingsState::tr("Quillory has asked your desktop for these keys.");
    case DesktopHotKeys::State::bound:
        return SettingsState::tr(
            "In this session your desktop decides which keys call the reader. They can be changed in its settings.");
    case DesktopHotKeys::State::refused:
        return SettingsState::tr("Your desktop has given Quillory no keys. Ask again, or bind a key of yours to the "
                                 "command “quillory --toggle” in its settings; “quillory --keys” tells how.");
    case DesktopHotKeys::State::unavailable:
        break;
    }
    return SettingsState::tr("This session hides keys from programs, and this desktop has no service that binds them. "
                             "Bind a key of yours to the command “quillory --toggle” in its settings; “quillory "
                             "--keys” tells how.");
}

}

SettingsState SettingsState::of(SettingsServices const& services)
{
    auto const& store = services.store;
    auto const& shortcuts = services.recorder.steps.shortcuts;
    SettingsState state;
    auto const& folder = store.folder.value();
    state.folderStatus = folder ? tr("Connected folder: %1").arg(oneLine(QFileInfo(*folder).fileName()))
                                : tr("No folder connected");
    state.canAskForFolder = store.filePanel.value() == nullptr;
    auto const toggle = shortcuts.getShortcut(ShortcutName::toggleQuillory());
    state.shortcutsMatch = toggle && toggle == shortcuts.getShortcut(ShortcutName::peekQuillory());
    if (auto const* const desktop = services.desktopHotKeys) {
        state.toggleBinding = bindingText(services, ShortcutName::toggleQuillory());
        if (!state.shortcutsMatch)
            state.peekBinding = bindingText(services, ShortcutName::peekQuillory());
        state.desktopKeys = desktopKeysText(desktop->state());
        state.canAskDesktopAgain = desktop->state() == DesktopHotKeys::State::refused;
    }
    state.gesture = gestureState(store, services.permission);
    if (state.gesture != Gesture::impossible)
        state.modifierGesture = store.modifierGesture;
    if (state.gesture == Gesture::allowed || state.gesture == Gesture::setupNeeded) {
        auto const key = keyOf(state.modifierGesture);
        state.gestureSteps = { tr("1. Tap %1 once and release.").arg(key),
            tr("2. Quickly press the same %1 key again and hold until the reader appears.").arg(key),
            tr("3. Release %1 to close the reader.").arg(key) };
    }
    for (auto const& pin : store.pinnedIDs.value())
        state.pins.append({ pin, titleOf(pin, store.sheets) });
    state.learningModeEnabled = store.learningModeEnabled;
    state.textSize = store.textSize;
    state.keyNames = store.keyNames;
    return state;
}

QString SettingsState::learningModeHelp() const
{
    return learningModeEnabled ? tr("Turn off Learning Mode to copy commands again")
                               : tr("Turn on Learning Mode to disable copying and practise typing commands");
}

QString SettingsState::textSizeLabel() const
{
    return tr("Text size: %1").arg(qRound(textSize));
}

}
