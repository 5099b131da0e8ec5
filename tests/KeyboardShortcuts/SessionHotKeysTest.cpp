#include "KeyboardShortcuts/SessionHotKeys.h"

#include "KeyboardShortcuts/DesktopWishes.h"
#include "support/FakeDesktopHotKeys.h"
#include "support/FakeHotKeys.h"
#include "support/MemoryUserDefaults.h"
#include "support/Test.h"

namespace Quillory {
namespace {

using State = DesktopHotKeys::State;
constexpr auto controlOption = ModifierFlags::control | ModifierFlags::option;

TEST(SessionHotKeys, All_move_over_with_the_desktops_service_and_what_is_held_is_let_go)
{
    FakeHotKeys grabs, desktops;
    FakeDesktopHotKeys service;
    SessionHotKeys hotKeys(grabs, desktops, service);
    QStringList log;
    auto const note = [&](QString const& name) {
        return [&log, name](HotKeys::Phase phase) { log << name + (phase == HotKeys::Phase::pressed ? u'+' : u'-'); };
    };
    auto a = hotKeys.registerHotKey(0, controlOption, note(u"a"_s));
    auto b = hotKeys.registerHotKey(1, controlOption, note(u"b"_s));
    EXPECT_EQ(grabs.attempts.size(), 0U) << "the desktop has not answered yet";
    EXPECT_EQ(desktops.registered().size(), 2U);

    desktops.press(0, controlOption);
    grabs.refusals = { { { 1, controlOption }, HotKeys::Refusal::Reason::taken } };
    service.become(State::unavailable);
    EXPECT_EQ(log, (QStringList { u"a+"_s, u"a-"_s }));
    EXPECT_EQ(desktops.registered().size(), 0U);
    EXPECT_EQ(grabs.registered().size(), 1U);
    EXPECT_FALSE(hotKeys.probe(1, controlOption));
    EXPECT_FALSE(hotKeys.registerHotKey(1, controlOption, note(u"c"_s)));

    // What one is told as it is let go may end others.
    grabs.press(0, controlOption);
    auto last = hotKeys.registerHotKey(2, controlOption, [&](auto) { b->end(); });
    grabs.press(2, controlOption);
    service.become(State::asking);
    service.become(State::bound);
    EXPECT_EQ(grabs.registered().size(), 0U);
    EXPECT_EQ(desktops.registered().size(), 2U);
    EXPECT_TRUE(hotKeys.probe(1, controlOption));
    a->end();
    desktops.press(0, controlOption);
    EXPECT_EQ(log, (QStringList { u"a+"_s, u"a-"_s, u"a+"_s, u"a-"_s }));
}

TEST(DesktopWishes, The_desktop_is_asked_for_what_is_stored_and_does_something)
{
    MemoryUserDefaults defaults;
    NotificationCenter notifications;
    ShortcutStorage storage(defaults, notifications);
    FakeDesktopHotKeys desktop;
    auto const stored = [](std::int64_t key) { return Shortcut { key, Shortcut::carbonModifiersOf(controlOption) }; };
    storage.setShortcut(stored(40), ShortcutName::toggleQuillory());
    DesktopWishes const wishes(desktop, storage, notifications);
    struct Row {
        std::optional<Shortcut> peek;
        qsizetype count;
    };
    for (auto const& [peek, count] : { Row { {}, 1 }, Row { stored(38), 2 }, Row { stored(40), 1 } }) {
        storage.setShortcut(peek, ShortcutName::peekQuillory());
        ASSERT_EQ(desktop.wishes.size(), count);
        EXPECT_EQ(desktop.wishes[0].id, u"toggleQuillory"_s);
        EXPECT_EQ(desktop.wishes.back().keyCode, count == 2 ? 38 : 40);
        EXPECT_EQ(desktop.wishes.back().modifiers, controlOption);
    }
}

}
}
