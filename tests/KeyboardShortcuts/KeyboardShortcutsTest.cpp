#include "KeyboardShortcuts/KeyboardShortcuts.h"

#include "support/FakeHotKeys.h"
#include "support/MemoryUserDefaults.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace Quillory {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr auto controlOption = ModifierFlags::control | ModifierFlags::option;

class KeyboardShortcutsTest : public testing::Test {
protected:
    void store(ShortcutName const& name, UserDefaults::Value value)
    {
        defaults.setValue(name.defaultsKey(), std::move(value));
    }

    KeyboardShortcuts::Action note(std::string what)
    {
        return [this, what = std::move(what)] { happened.push_back(what); };
    }

    MemoryUserDefaults defaults;
    FakeHotKeys hotKeys;
    KeyboardShortcuts shortcuts { defaults, hotKeys };
    ShortcutName const toggle = ShortcutName::toggleQuillory();
    ShortcutName const peek = ShortcutName::peekQuillory();
    Shortcut const controlOptionK { 40, 6144 };
    FakeHotKeys::Combination const controlOptionKeyK { 40, controlOption };
    std::vector<std::string> happened;
};

TEST_F(KeyboardShortcutsTest, Only_a_readable_string_under_the_names_key_is_a_shortcut)
{
    EXPECT_EQ(toggle.defaultsKey(), QStringLiteral("KeyboardShortcuts_toggleQuillory"));
    EXPECT_EQ(peek.defaultsKey(), QStringLiteral("KeyboardShortcuts_peekQuillory"));
    EXPECT_EQ(shortcuts.getShortcut(toggle), std::nullopt);
    for (UserDefaults::Value const& unreadable :
        { UserDefaults::Value(false), UserDefaults::Value(true), UserDefaults::Value(QStringLiteral("no JSON")),
            UserDefaults::Value(QStringLiteral("{}")), UserDefaults::Value(40.0) }) {
        store(toggle, unreadable);
        EXPECT_EQ(shortcuts.getShortcut(toggle), std::nullopt);
    }
    store(toggle, controlOptionK.encoded());
    EXPECT_EQ(shortcuts.getShortcut(toggle), controlOptionK);
    EXPECT_EQ(shortcuts.getShortcut(peek), std::nullopt);
}

TEST_F(KeyboardShortcutsTest, An_initial_shortcut_is_stored_only_where_nothing_is)
{
    ShortcutName const name { QStringLiteral("other"), controlOptionK };
    store(name, false);
    shortcuts.onKeyUp(name, note("up"));
    EXPECT_EQ(defaults.value(name.defaultsKey()), UserDefaults::Value(false));
    EXPECT_THAT(hotKeys.registered(), IsEmpty());

    defaults.removeValue(name.defaultsKey());
    shortcuts.onKeyUp(name, note("up"));
    EXPECT_EQ(shortcuts.getShortcut(name), controlOptionK);
    EXPECT_THAT(hotKeys.registered(), ElementsAre(controlOptionKeyK));
}

TEST_F(KeyboardShortcutsTest, Nothing_is_registered_before_somebody_listens)
{
    store(toggle, controlOptionK.encoded());
    EXPECT_THAT(hotKeys.attempts, IsEmpty());
    shortcuts.onKeyUp(peek, note("peek"));
    EXPECT_THAT(hotKeys.attempts, IsEmpty());
    shortcuts.onKeyUp(toggle, note("toggle"));
    EXPECT_THAT(hotKeys.registered(), ElementsAre(controlOptionKeyK));
}

TEST_F(KeyboardShortcutsTest, Actions_run_in_order_of_arrival_each_in_its_phase)
{
    store(toggle, controlOptionK.encoded());
    shortcuts.onKeyUp(toggle, note("first up"));
    shortcuts.onKeyDown(toggle, note("down"));
    shortcuts.onKeyUp(toggle, note("second up"));
    EXPECT_THAT(hotKeys.registered(), SizeIs(1));
    hotKeys.press(40, controlOption);
    EXPECT_THAT(happened, ElementsAre("down"));
    hotKeys.release(40);
    EXPECT_THAT(happened, ElementsAre("down", "first up", "second up"));
}

TEST_F(KeyboardShortcutsTest, Two_names_with_one_shortcut_share_its_hot_key)
{
    store(toggle, controlOptionK.encoded());
    store(peek, controlOptionK.encoded());
    shortcuts.onKeyUp(toggle, note("toggle"));
    shortcuts.onKeyUp(peek, note("peek"));
    EXPECT_THAT(hotKeys.attempts, SizeIs(1));
    hotKeys.press(40, controlOption);
    hotKeys.release(40);
    EXPECT_THAT(happened, ElementsAre("toggle", "peek"));

    store(toggle, false);
    hotKeys.press(40, controlOption);
    hotKeys.release(40);
    EXPECT_THAT(happened, ElementsAre("toggle", "peek", "peek"));
}

TEST_F(KeyboardShortcutsTest, A_refused_shortcut_has_no_hot_key_and_is_tried_again_by_the_next_listener)
{
    store(toggle, controlOptionK.encoded());
    hotKeys.refusals = { { controlOptionKeyK, HotKeys::Refusal::Reason::taken } };
    shortcuts.onKeyUp(toggle, note("first"));
    EXPECT_THAT(hotKeys.registered(), IsEmpty());
    hotKeys.refusals.clear();
    shortcuts.onKeyUp(toggle, note("second"));
    EXPECT_THAT(hotKeys.registered(), ElementsAre(controlOptionKeyK));
}

TEST_F(KeyboardShortcutsTest, A_key_code_that_no_key_can_have_is_not_registered)
{
    for (std::int64_t const keyCode : { std::int64_t { -1 }, std::int64_t { 65536 }, std::int64_t { 65536 + 40 } }) {
        store(toggle, Shortcut { keyCode, 6144 }.encoded());
        shortcuts.onKeyUp(toggle, note("never"));
    }
    EXPECT_THAT(hotKeys.attempts, IsEmpty());
}

TEST_F(KeyboardShortcutsTest, The_hot_keys_end_with_their_owner)
{
    store(toggle, controlOptionK.encoded());
    {
        KeyboardShortcuts passing(defaults, hotKeys);
        passing.onKeyUp(toggle, note("passing"));
        EXPECT_THAT(hotKeys.registered(), SizeIs(1));
    }
    EXPECT_THAT(hotKeys.registered(), IsEmpty());
}

}
}
