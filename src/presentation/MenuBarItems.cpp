#include "presentation/MenuBarItems.h"

#include "text/Graphemes.h"
#include "text/OneLine.h"

#include <QSet>

#include <utility>

namespace Quillory {

namespace {

QStringList firstCharacters(QStringView title)
{
    QStringList characters;
    while (!title.isEmpty() && characters.size() < MenuBarItems::faceLength) {
        auto const character = firstGraphemes(title, 1);
        characters.append(character.toString());
        title = title.sliced(character.size());
    }
    return characters;
}

}

MenuBarItems::MenuBarItems(LibraryStore& store, StatusBar& bar, std::optional<MenuBarUpdates> updates, Actions actions)
    : m_store(store)
    , m_bar(bar)
    , m_updates(std::move(updates))
    , m_actions(std::move(actions))
    , m_look { .autosaveName = QStringLiteral("Quillory.Main"),
        .characters = {},
        .title = tr("Quillory"),
        .toolTip = tr("Open Quillory to read your cheat sheets"),
        .accessibilityLabel = tr("Open Quillory") }
    , m_item(bar.statusItem({ [this] { statusClicked(); }, [this] { return mainMenu(); },
          [this](int number) { chooseInMainMenu(number); } }))
{
    m_item->show(m_look);
}

void MenuBarItems::observeUpdates()
{
    if (!m_updates)
        return;
    m_updateReminder = m_updates->observeUpdateAvailable([this] { showUpdateState(); });
    showUpdateState();
}

void MenuBarItems::showUpdateState()
{
    bool const isAvailable = m_updates->updateAvailable();
    m_look.attention = isAvailable ? StatusItemLook::Attention::waiting : StatusItemLook::Attention::none;
    m_look.toolTip = isAvailable ? tr("Quillory — Update available") : tr("Quillory");
    m_item->show(m_look);
}

void MenuBarItems::statusClicked()
{
    if (isPickerOnScreen())
        return;
    m_actions.toggle();
}

// The same whatever the library holds and whether the panel is up.
StatusMenu MenuBarItems::mainMenu() const
{
    if (isPickerOnScreen())
        return {};
    StatusMenu menu { { .number = openRow, .title = tr("Open Quillory"), .key = {} }, { .number = firstSeparator } };
    if (m_updates) {
        menu.append({ .number = updateRow,
            .title = m_updates->updateAvailable() ? tr("Update available…") : tr("Check for Updates…"),
            .isEnabled = m_updates->canCheckForUpdates(),
            .key = {} });
        menu.append(StatusMenuRow { .number = secondSeparator });
    }
    menu.append({ .number = quitRow, .title = tr("Quit Quillory"), .key = QStringLiteral("q") });
    return menu;
}

void MenuBarItems::chooseInMainMenu(int number)
{
    if (number == openRow)
        m_actions.toggle();
    else if (number == updateRow && m_updates)
        m_updates->checkForUpdates();
    else if (number == quitRow)
        m_actions.quit();
}

void MenuBarItems::rebuildPins()
{
    auto const pinned = m_store.pinnedSheets();
    QSet<QString> ids;
    for (auto const& sheet : pinned)
        ids.insert(sheet.id);
    std::erase_if(m_pinnedItems, [&](auto const& entry) { return !ids.contains(entry.first); });
    for (auto const& sheet : pinned) {
        auto& item = m_pinnedItems[sheet.id];
        if (!item)
            item = makePin(sheet.id);
        item->show(lookOfPin(sheet));
    }
}

std::unique_ptr<StatusItem> MenuBarItems::makePin(QString const& id)
{
    return m_bar.statusItem(
        { [this, id] { pinClicked(id); }, [this, id] { return pinMenu(id); }, [this, id](int) { unpin(id); } });
}

StatusItemLook MenuBarItems::lookOfPin(Sheet const& sheet) const
{
    auto const title = oneLine(sheet.title);
    auto const open = tr("Open %1").arg(title);
    return { .autosaveName = QStringLiteral("Quillory.Pin.") + m_store.folder.value().value_or(QString()) + u'.'
            + sheet.id,
        .characters = firstCharacters(title),
        .title = title,
        .toolTip = open,
        .accessibilityLabel = open };
}

// The id is the callee's own: what follows may end the item, and with it whatever the item holds.
void MenuBarItems::pinClicked(QString id)
{
    if (isPickerOnScreen() || !findSheet(m_store.sheets, id))
        return;
    m_store.select(id);
    m_actions.showSelection();
}

StatusMenu MenuBarItems::pinMenu(QString const& id) const
{
    auto const* const sheet = isPickerOnScreen() ? nullptr : findSheet(m_store.sheets, id);
    if (!sheet)
        return {};
    return { { .number = unpinRow, .title = tr("Unpin %1").arg(oneLine(sheet->title)), .key = {} } };
}

void MenuBarItems::unpin(QString id)
{
    m_store.togglePin(id);
}

}
