#pragma once

#include "library/LibraryStore.h"
#include "platform/StatusBar.h"
#include "presentation/MenuBarUpdates.h"

#include <QCoreApplication>

#include <memory>
#include <optional>
#include <unordered_map>

namespace Quillory {

// What stands in the menu bar: the program's own item, and one for each pinned sheet that is in the library. A left click
// does the quick thing, a right click has a menu; all else that a mouse can do there does nothing. Main thread only.
class MenuBarItems {
    Q_DECLARE_TR_FUNCTIONS(MenuBarItems)
public:
    struct Actions {
        std::function<void()> toggle;
        std::function<void()> showSelection; // the panel, in front, with the sheet that is selected
        std::function<void()> quit;
    };

    // The rows of the menus, by their numbers.
    enum Row { openRow = 1, firstSeparator, updateRow, secondSeparator, quitRow };
    static constexpr int unpinRow = 1;

    static constexpr qsizetype faceLength = 3; // characters

    // Makes the program's item. Store and bar outlive it. `updates` is absent where the program has no updater.
    MenuBarItems(LibraryStore& store, StatusBar& bar, std::optional<MenuBarUpdates> updates, Actions actions);
    MenuBarItems(MenuBarItems const&) = delete;
    MenuBarItems& operator=(MenuBarItems const&) = delete;

    // Makes the program's item follow the updater, if there is one, from now on.
    void observeUpdates();

    // Makes the items of pinned sheets follow the store's pins.
    void rebuildPins();

private:
    bool isPickerOnScreen() const { return m_store.filePanel.value() != nullptr; }
    void showUpdateState();
    void statusClicked();
    StatusMenu mainMenu() const;
    void chooseInMainMenu(int number);
    std::unique_ptr<StatusItem> makePin(QString const& id);
    StatusItemLook lookOfPin(Sheet const& sheet) const;
    void pinClicked(QString id);
    StatusMenu pinMenu(QString const& id) const;
    void unpin(QString id);

    LibraryStore& m_store;
    StatusBar& m_bar;
    std::optional<MenuBarUpdates> m_updates;
    Actions m_actions;
    StatusItemLook m_look;
    std::unique_ptr<StatusItem> m_item;
    std::unordered_map<QString, std::unique_ptr<StatusItem>> m_pinnedItems; // by the sheet's id
    Registration m_updateReminder;
};

}
