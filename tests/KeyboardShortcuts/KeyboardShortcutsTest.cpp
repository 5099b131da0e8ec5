#include "KeyboardShortcuts/KeyboardShortcuts.h"

#include "support/Dice.h"
#include "support/FakeHotKeys.h"
#include "support/ManualExecutor.h"
#include "support/MemoryUserDefaults.h"
#include "support/ShortcutsOnFakes.h"
#include "support/Test.h"

#include <algorithm>
#include <map>
#include <set>

namespace Quillory {
namespace {

constexpr auto controlOption = ModifierFlags::control | ModifierFlags::option;

class KeyboardShortcutsTest : public Test {
protected:
    KeyboardShortcuts::Action note(std::string what)
    {
        return [this, what = std::move(what)] { happened.push_back(what); };
    }

    using Kind = RawKeyEvent::Kind;
    using Repeat = RawKeyEvent::Repeat;
    bool swallows(Kind kind, ModifierFlags modifiers, std::uint16_t keyCode = 40, Repeat repeat = Repeat::no)
    {
        return line.localKeyEvents.send({ kind, keyCode, modifiers, repeat }) == LocalKeyEvents::Answer::swallow;
    }

    void openMenu() { line.notifications.post({ NotificationCenter::menuDidBeginTracking(), {} }); }
    void closeMenu() { line.notifications.post({ NotificationCenter::menuDidEndTracking(), {} }); }

    MemoryUserDefaults defaults;
    FakeHotKeys hotKeys;
    ManualExecutor executor;
    ShortcutsOnFakes line { defaults, hotKeys, executor };
    KeyboardShortcuts& shortcuts = line.shortcuts;
    ShortcutName const toggle = ShortcutName::toggleQuillory();
    ShortcutName const peek = ShortcutName::peekQuillory();
    Shortcut const controlOptionK { 40, 6144 };
    FakeHotKeys::Combination const controlOptionKeyK { 40, controlOption };
    std::vector<std::string> happened;
};

TEST_F(KeyboardShortcutsTest, An_initial_shortcut_is_stored_only_where_nothing_is_and_registered_a_turn_later)
{
    ShortcutName const disabled { u"disabled"_s, controlOptionK }, fresh { u"fresh"_s, controlOptionK };
    shortcuts.onKeyUp(disabled, note("up"));
    shortcuts.setShortcut(std::nullopt, disabled);
    shortcuts.define(disabled);
    shortcuts.define(fresh);
    executor.runPosted();
    EXPECT_EQ(shortcuts.getShortcut(disabled), std::nullopt);
    EXPECT_EQ(shortcuts.getShortcut(fresh), controlOptionK);
    EXPECT_THAT(hotKeys.attempts, IsEmpty()) << "nobody listens";
    shortcuts.onKeyDown(fresh, note("down"));
    EXPECT_THAT(hotKeys.registered(), ElementsAre(controlOptionKeyK));
    shortcuts.setShortcut(Shortcut { 65536 + 40, 6144 }, fresh);
    EXPECT_THAT(hotKeys.registered(), IsEmpty()) << "no key has this code";
}

TEST_F(KeyboardShortcutsTest, An_action_may_change_and_end_what_called_it)
{
    shortcuts.onKeyDown(toggle, [&] {
        shortcuts.setShortcut(Shortcut { 38, 6144 }, toggle);
        shortcuts.onKeyUp(toggle, note("late"));
        line.center.setPaused(HotKeyCenter::Pause::on);
        line.center.setPaused(HotKeyCenter::Pause::off);
    });
    shortcuts.setShortcut(controlOptionK, toggle);
    hotKeys.press(40, controlOption);
    hotKeys.release(40);
    EXPECT_THAT(happened, IsEmpty());
    EXPECT_THAT(hotKeys.registered(), ElementsAre(FakeHotKeys::Combination { 38, controlOption }));
}

// What the line should do, told as sets: which shortcuts have a hot key, which of them the system has, which are down.
class ShortcutsModel : public KeyboardShortcutsTest {
protected:
    static constexpr std::uint16_t keys[] { 40, 38, 37 };

    static Shortcut shortcut(std::size_t key) { return { keys[key], 6144 }; }
    static FakeHotKeys::Combination combination(std::size_t key) { return { keys[key], controlOption }; }

    void listen(std::size_t name)
    {
        shortcuts.onKeyDown(names[name], note(std::to_string(name) + " down"));
        shortcuts.onKeyUp(names[name], note(std::to_string(name) + " up"));
        listeners.push_back(name);
        registration(name);
    }

    void registration(std::size_t name)
    {
        if (std::ranges::count(listeners, name) > 0 && stored[name] && !refused.contains(*stored[name]))
            wasEverHad = table.insert(*stored[name]).second || wasEverHad;
    }

    void set(std::size_t name, std::optional<std::size_t> key)
    {
        auto const chosen = key ? std::optional(shortcut(*key)) : std::nullopt;
        std::vector<FakeHotKeys::Combination> whenPosted;
        auto const observation = line.notifications.observe(
            ShortcutStorage::shortcutByNameDidChange(), [&](Notification const& notification) {
                EXPECT_EQ(std::any_cast<ShortcutName>(notification.userInfo.at(u"name"_s)), names[name]);
                whenPosted = hotKeys.registered();
                happened.push_back("posted");
            });
        shortcuts.setShortcut(chosen, names[name]);
        expected.push_back("posted");
        EXPECT_EQ(whenPosted, hotKeys.registered()) << "the hot key follows first";
        EXPECT_EQ(ShortcutStorage(defaults, line.notifications).getShortcut(names[name]), chosen);
        auto const old = std::exchange(stored[name], std::nullopt);
        if (old && std::ranges::count(stored, old) == 0) {
            table.erase(*old);
            down.erase(*old);
        }
        stored[name] = key;
        registration(name);
    }

    void setMode()
    {
        line.center.setPaused(isPaused ? HotKeyCenter::Pause::on : HotKeyCenter::Pause::off);
        isMenuOpen ? openMenu() : closeMenu();
        using enum HotKeyCenter::Mode;
        mode = isPaused ? disabled : isMenuOpen ? menuOpen : normal;
        EXPECT_EQ(line.center.mode(), mode);
        if (mode != normal)
            down.clear();
        else
            std::erase_if(table, [&](auto key) { return refused.contains(key) && !held.contains(key); });
    }

    void strike(std::size_t key, bool isPress)
    {
        bool const isRaw = mode == HotKeyCenter::Mode::menuOpen;
        if (isRaw) {
            EXPECT_EQ(swallows(isPress ? Kind::down : Kind::up, controlOption, keys[key]), table.contains(key));
            EXPECT_FALSE(swallows(Kind::down, controlOption, keys[key], Repeat::yes));
        } else if (isPress) {
            hotKeys.press(keys[key], controlOption);
        } else {
            hotKeys.release(keys[key]);
        }
        bool const comes = isRaw ? table.contains(key)
            : isPress            ? held.contains(key) && down.insert(key).second
                                 : down.erase(key) == 1;
        for (auto const name : comes ? listeners : std::vector<std::size_t>()) {
            if (stored[name] == key)
                expected.push_back(std::to_string(name) + (isPress ? " down" : " up"));
        }
    }

    std::vector<ShortcutName> const names { { u"a"_s, {} }, { u"b"_s, {} }, { u"c"_s, {} } };
    std::vector<std::optional<std::size_t>> stored = std::vector<std::optional<std::size_t>>(3);
    std::vector<std::size_t> listeners; // names in order
    std::set<std::size_t> table, down, refused, held;
    bool wasEverHad = false, isPaused = false, isMenuOpen = false;
    HotKeyCenter::Mode mode = HotKeyCenter::Mode::normal;
    std::vector<std::string> expected;
};

TEST_F(ShortcutsModel, Any_order_of_changes_modes_refusals_and_keys_follows_it)
{
    Dice dice(4);
    std::size_t presses = 0;
    for (int step = 0; step < 20000; ++step) {
        SCOPED_TRACE(step);
        auto const name = dice.below(names.size());
        auto const key = dice.below(std::size(keys));
        switch (dice.below(9)) {
        case 0:
            if (std::ranges::count(listeners, name) < 2)
                listen(name);
            break;
        case 1:
            set(name, dice.oneIn(4) ? std::nullopt : std::optional(key));
            break;
        case 2:
            isPaused = dice.oneIn(3);
            setMode();
            break;
        case 3:
            isMenuOpen = dice.oneIn(2);
            setMode();
            break;
        case 4:
            if (!refused.erase(key))
                refused.insert(key);
            hotKeys.refusals.clear();
            for (auto const each : refused)
                hotKeys.refusals.push_back({ combination(each), HotKeys::Refusal::Reason::taken });
            break;
        default:
            strike(key, dice.oneIn(2));
            presses += happened.size();
        }
        held = mode == HotKeyCenter::Mode::normal ? table : std::set<std::size_t>();
        auto const all = hotKeys.registered();
        for (std::size_t each = 0; each < std::size(keys); ++each)
            ASSERT_EQ(std::ranges::count(all, combination(each)) > 0, held.contains(each));
        ASSERT_EQ(line.localKeyEvents.isObserved(), mode == HotKeyCenter::Mode::menuOpen && wasEverHad);
        ASSERT_EQ(happened, expected);
        happened.clear();
        expected.clear();
    }
    EXPECT_GT(presses, 1000U);
}

}
}
