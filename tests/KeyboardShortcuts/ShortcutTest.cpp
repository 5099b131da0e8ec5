#include "KeyboardShortcuts/Shortcut.h"
#include "KeyboardShortcuts/MenuItem.h"

#include "support/Cases.h"
#include "support/FakeKeyboardLayout.h"

namespace Quillory {
namespace {

using enum ModifierFlags;

Shortcut shortcutIn(QJsonValue const& row)
{
    return { row[0].toInt(), row[1].toInt() };
}

TEST(Shortcut, Modifiers_turn_from_one_mask_into_the_other_and_foreign_bits_vanish)
{
    std::pair<ModifierFlags, std::int64_t> const known[] { { control, 0x1000 }, { option, 0x800 }, { shift, 0x200 },
        { command, 0x100 }, { function, 0x20000 } };
    for (unsigned chosen = 0; chosen < 32; ++chosen) {
        auto flags = none;
        std::int64_t mask = 0;
        for (unsigned index = 0; index < std::size(known); ++index) {
            flags = chosen >> index & 1U ? flags | known[index].first : flags;
            mask |= chosen >> index & 1U ? known[index].second : 0;
        }
        EXPECT_EQ((Shortcut { 0, mask | 0x40400 }).modifiers(), flags) << chosen;
        EXPECT_EQ(Shortcut::carbonModifiersOf(flags | static_cast<ModifierFlags>(0x10001)), mask) << chosen;
    }
}

TEST(Shortcut, Its_keys_are_those_that_can_go_down_together)
{
    forEachCase(u"combinations"_s, [](auto const& row) {
        KeyCombination const known { static_cast<std::uint16_t>(row[0].toInt()),
            Shortcut { 0, row[2].toInt() }.modifiers() };
        EXPECT_EQ(shortcutIn(row).combination(), row[2].isNull() ? std::nullopt : std::optional(known));
    });
}

TEST(Shortcut, Only_an_object_with_both_integers_is_a_shortcut_and_what_was_encoded_is_read_again)
{
    Shortcut const shortcut { 40, 6144 };
    forEachCase(u"stored"_s, [&](auto const& row) {
        EXPECT_EQ(Shortcut::decode(row[0].toString()), row[1].toBool() ? std::optional(shortcut) : std::nullopt);
    });
    EXPECT_EQ(Shortcut::decode(shortcut.encoded()), shortcut);
}

TEST(Shortcut, Shown_text_is_symbols_in_their_order_then_the_key_of_the_layout)
{
    FakeKeyboardLayout const layout({ { 0, u"a"_s }, { 27, u"ß"_s }, { 41, u"\u01c6"_s }, { 36, u"never shown"_s } });
    forEachCase(
        u"shown"_s, [&](auto const& row) { EXPECT_EQ(shortcutIn(row).description(layout), row[2].toString()); });
}

TEST(Shortcut, It_is_taken_where_an_enabled_hot_key_of_the_desktop_or_an_item_of_a_menu_is_the_very_same)
{
    std::vector<SymbolicHotKey> const system { { 40, control, true }, { 38, control, false }, { 111, none, true },
        { 123, control | function, true }, { 2, function, true }, { 3, static_cast<ModifierFlags>(0x140000), true } };
    forEachCase(
        u"taken"_s, [&](auto const& row) { EXPECT_EQ(shortcutIn(row).isTakenBySystem(system), row[2].toBool()); });

    FakeKeyboardLayout const layout({ { 3, u"f"_s }, { 40, u"k"_s } });
    std::vector<MenuItem> const menu { { u"No key"_s, {}, none, {} },
        { u"Edit"_s, {}, none, { { u"Find"_s, u"f"_s, command, {} }, { u"Find back"_s, u"F"_s, command, {} } } },
        { u"Find too"_s, u"f"_s, command, {} }, { u"Up"_s, u"\uf700"_s, option, {} },
        { u"Send"_s, u"\r"_s, command, {} } };
    forEachCase(u"menu"_s, [&](auto const& row) {
        auto const* const item = MenuItem::takenBy(shortcutIn(row), menu, layout);
        EXPECT_EQ(item ? item->title : u""_s, row[2].toString());
    });
}

}
}
