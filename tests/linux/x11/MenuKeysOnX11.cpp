#include "X11Desk.h"

#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "linux/qt/QtLocalKeyEvents.h"
#include "linux/qt/QtMenuTracking.h"
#include "linux/x11/X11HotKeys.h"
#include "linux/x11/X11KeyState.h"
#include "support/ManualExecutor.h"
#include "support/MemoryUserDefaults.h"

#include <QKeyEvent>
#include <QMenu>

namespace Quillory {
namespace {

// Not Option: that key alone closes a menu.
constexpr auto controlCommand = ModifierFlags::control | ModifierFlags::command;

class ListeningMenu final : public QMenu {
public:
    QList<int> keys;

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        keys.append(event->key());
        QMenu::keyPressEvent(event);
    }
};

class MenuKeysOnX11 : public X11Desk {
protected:
    X11HotKeys hotKeys { *connection, clock };
    NotificationCenter notifications;
    QtMenuTracking tracking { notifications };
    X11KeyState keyState { *connection };
    QtLocalKeyEvents localKeyEvents { [](std::uint32_t scanCode) {
                                         return VirtualKeys::virtualKeyCode(static_cast<std::uint8_t>(scanCode));
                                     },
        keyState };
    MemoryUserDefaults defaults;
    ManualExecutor executor;
    ShortcutStorage storage { defaults, notifications };
    HotKeyCenter center { hotKeys, localKeyEvents, notifications };
    KeyboardShortcuts shortcuts { storage, center, executor };
    std::vector<std::string> told;
};

TEST_F(MenuKeysOnX11, A_shortcut_works_once_while_a_menu_has_the_keyboard_and_the_menu_does_not_see_it)
{
    auto const toggle = ShortcutName::toggleQuillory();
    shortcuts.onKeyDown(toggle, [&] { told.emplace_back("down"); });
    shortcuts.onKeyUp(toggle, [&] { told.emplace_back("up"); });
    shortcuts.setShortcut(Shortcut { 40, Shortcut::carbonModifiersOf(controlCommand) }, toggle);
    play(u"ctrl+super+K"_s);
    EXPECT_TRUE(loop.runUntil([&] { return told.size() == 2; }));

    ListeningMenu menu;
    menu.addAction(u"Open"_s);
    auto* const submenu = menu.addMenu(u"More"_s);
    submenu->addAction(u"Other"_s);
    menu.popup({ 200, 200 });
    EXPECT_EQ(center.mode(), HotKeyCenter::Mode::menuOpen);
    ASSERT_TRUE(loop.runUntil([&] { return !other.canHaveKeyboard(); })) << "the menu takes the keyboard";
    play(u"ctrl+super+K J"_s);
    EXPECT_TRUE(loop.runUntil([&] { return menu.keys.contains(Qt::Key_J); }));
    EXPECT_THAT(told, ElementsAre("down", "up", "down", "up"));
    EXPECT_FALSE(menu.keys.contains(Qt::Key_K));

    submenu->popup({ 300, 200 });
    submenu->hide();
    EXPECT_EQ(center.mode(), HotKeyCenter::Mode::menuOpen) << "one is still open";
    play(u"Escape"_s);
    EXPECT_TRUE(loop.runUntil([&] { return !menu.isVisible() && other.canHaveKeyboard(); }));
    EXPECT_EQ(center.mode(), HotKeyCenter::Mode::normal);
    play(u"ctrl+super+K"_s);
    EXPECT_TRUE(loop.runUntil([&] { return told.size() == 6; }));

    auto dying = std::make_unique<QMenu>();
    dying->addAction(u"Open"_s);
    dying->popup({ 200, 200 });
    EXPECT_EQ(center.mode(), HotKeyCenter::Mode::menuOpen);
    dying.reset();
    EXPECT_EQ(center.mode(), HotKeyCenter::Mode::normal);
}

}
}
