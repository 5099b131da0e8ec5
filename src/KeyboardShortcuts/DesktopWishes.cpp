#include "KeyboardShortcuts/DesktopWishes.h"

namespace Quillory {

namespace {

void append(QList<DesktopHotKeys::Wish>& wishes, ShortcutName const& name, std::optional<Shortcut> const& shortcut,
    QString const& description)
{
    if (auto const keys = shortcut ? shortcut->combination() : std::nullopt)
        wishes.append({ name.rawValue, description, keys->keyCode, keys->modifiers });
}

}

DesktopWishes::DesktopWishes(
    DesktopHotKeys& desktopHotKeys, ShortcutStorage const& shortcuts, NotificationCenter& notifications)
    : m_storageChanges(notifications.observe(
          ShortcutStorage::shortcutByNameDidChange(), [&](auto const&) { desktopHotKeys.bind(of(shortcuts)); }))
{
    desktopHotKeys.bind(of(shortcuts));
}

QList<DesktopHotKeys::Wish> DesktopWishes::of(ShortcutStorage const& shortcuts)
{
    QList<DesktopHotKeys::Wish> all;
    auto const toggle = shortcuts.getShortcut(ShortcutName::toggleQuillory());
    auto const peek = shortcuts.getShortcut(ShortcutName::peekQuillory());
    append(all, ShortcutName::toggleQuillory(), toggle, tr("Show the reader, or send it away"));
    if (peek != toggle)
        append(all, ShortcutName::peekQuillory(), peek, tr("Show the reader while the keys are held"));
    return all;
}

}
