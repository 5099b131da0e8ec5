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

SettingsState::Gesture gestureState(LibraryStore const& store)
{
    using enum SettingsState::Gesture;
    if (store.modifierGesture == ModifierGesture::off)
        return off;
    return store.gesturePermissionGranted ? allowed : setupNeeded;
}

}

SettingsState SettingsState::of(LibraryStore const& store, KeyboardShortcuts const& shortcuts)
{
    SettingsState state;
    auto const& folder = store.folder.value();
    state.folderStatus = folder ? tr("Connected folder: %1").arg(oneLine(QFileInfo(*folder).fileName()))
                                : tr("No folder connected");
    state.canAskForFolder = store.filePanel.value() == nullptr;
    auto const toggle = shortcuts.getShortcut(ShortcutName::toggleQuillory());
    state.shortcutsMatch = toggle && toggle == shortcuts.getShortcut(ShortcutName::peekQuillory());
    state.modifierGesture = store.modifierGesture;
    state.gesture = gestureState(store);
    if (state.gesture != Gesture::off) {
        auto const key = keyOf(state.modifierGesture);
        state.gestureSteps = { tr("1. Tap %1 once and release.").arg(key),
            tr("2. Quickly press the same %1 key again and hold until the reader appears.").arg(key),
            tr("3. Release %1 to close the reader.").arg(key) };
    }
    for (auto const& pin : store.pinnedIDs.value())
        state.pins.append({ pin, titleOf(pin, store.sheets) });
    state.learningModeEnabled = store.learningModeEnabled;
    state.textSize = store.textSize;
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
