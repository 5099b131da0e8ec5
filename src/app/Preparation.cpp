#include "Preparation.h"

#include "library/FolderAccess.h"

#include <array>

namespace Quillory {

using namespace Qt::StringLiterals;

namespace {

struct CalledBy {
    ShortcutName name;
    Shortcut initial;
    char const* sentence; // to be translated; %1 is the keys
    char const* without;
};

std::array<CalledBy, 2> const& waysToCall()
{
    constexpr std::int64_t keyJ = 38, keyK = 40;
    static auto const controlAndAlt = Shortcut::carbonModifiersOf(ModifierFlags::control | ModifierFlags::option);
    static std::array<CalledBy, 2> const ways { {
        { ShortcutName::toggleQuillory(), { keyK, controlAndAlt },
            QT_TRANSLATE_NOOP("StartOptions", "Press %1 to call the reader, and again to send it away."),
            QT_TRANSLATE_NOOP("StartOptions", "No shortcut calls the reader. Start the program again to open it.") },
        { ShortcutName::peekQuillory(), { keyJ, controlAndAlt },
            QT_TRANSLATE_NOOP("StartOptions", "Hold %1 to peek: the reader stays while the keys are down."),
            QT_TRANSLATE_NOOP("StartOptions", "No shortcut peeks.") },
    } };
    return ways;
}

std::expected<void, QString> connectFolder(FolderAccess& access, QString const& folder)
{
    if (auto const remembered = access.remember(folder); !remembered)
        return std::unexpected(
            StartOptions::tr("\"%1\" can't be connected: %2").arg(folder, remembered.error().localizedDescription()));
    return {};
}

}

QString inWords(Shortcut const& shortcut, KeyboardLayout const& layout)
{
    static constexpr std::array<std::pair<ModifierFlags, char const*>, 4> words { {
        { ModifierFlags::control, QT_TRANSLATE_NOOP("StartOptions", "Ctrl") },
        { ModifierFlags::option, QT_TRANSLATE_NOOP("StartOptions", "Alt") },
        { ModifierFlags::shift, QT_TRANSLATE_NOOP("StartOptions", "Shift") },
        { ModifierFlags::command, QT_TRANSLATE_NOOP("StartOptions", "Super") },
    } };
    QStringList keys;
    for (auto const& [flag, word] : words) {
        if (contains(shortcut.modifiers(), flag))
            keys << StartOptions::tr(word);
    }
    keys << Shortcut { shortcut.carbonKeyCode, 0 }.description(layout);
    return keys.join(u'+');
}

std::expected<void, QString> prepareSettings(
    StartOptions const& options, UserDefaults& defaults, FolderBookmarks& bookmarks, ShortcutStorage& shortcuts)
{
    FolderAccess access(defaults, bookmarks);
    auto const& folder = options.folder || access.isStored() ? options.folder : options.spareFolder;
    if (auto const connected = folder ? connectFolder(access, *folder) : std::expected<void, QString>(); !connected)
        return connected;
    if (options.gesture)
        defaults.setValue(u"modifierGesture"_s, rawValue(*options.gesture));
    for (auto const& way : waysToCall()) {
        if (options.initialShortcuts)
            shortcuts.storeInitialShortcut({ way.name.rawValue, way.initial });
    }
    return {};
}

QStringList howToCall(
    ShortcutStorage const& shortcuts, KeyboardLayout const& layout, DesktopHotKeys const* desktopHotKeys)
{
    using enum DesktopHotKeys::State;
    auto const state = desktopHotKeys ? desktopHotKeys->state() : asking;
    if (state == refused || state == unavailable)
        return { StartOptions::tr("Bind a key of yours to “quillory --toggle” in the settings of your desktop.") };
    QStringList sentences;
    for (auto const& way : waysToCall()) {
        auto const shortcut = shortcuts.getShortcut(way.name);
        auto keys = shortcut ? inWords(*shortcut, layout) : QString();
        if (shortcut && state == bound)
            keys = desktopHotKeys->trigger(way.name.rawValue);
        sentences << (keys.isEmpty() ? StartOptions::tr(way.without) : StartOptions::tr(way.sentence).arg(keys));
    }
    return sentences;
}

}
