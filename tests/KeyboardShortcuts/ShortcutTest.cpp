#include "KeyboardShortcuts/Shortcut.h"
#include "KeyboardShortcuts/MenuItem.h"

#include "support/FakeKeyboardLayout.h"
#include "support/Test.h"

namespace Quillory {
namespace {

TEST(Shortcut, Modifiers_turn_from_one_mask_into_the_other_and_foreign_bits_vanish)
{
    using enum ModifierFlags;
    for (auto const& [carbon, flags, back] :
        std::initializer_list<std::tuple<std::int64_t, ModifierFlags, std::int64_t>> { { 0, none, 0 },
            { 0x1000, control, 0x1000 }, { 0x800, option, 0x800 }, { 0x200, shift, 0x200 }, { 0x100, command, 0x100 },
            { 0x20000, function, 0x20000 }, { 6144, control | option, 6144 },
            { 0x21b00, control | option | shift | command | function, 0x21b00 }, { 0x400 | 0x100, command, 0x100 },
            { 0x40000, none, 0 } }) {
        SCOPED_TRACE(carbon);
        Shortcut const shortcut { 0, carbon };
        EXPECT_EQ(shortcut.modifiers(), flags);
        EXPECT_EQ(Shortcut::carbonModifiersOf(shortcut.modifiers()), back);
    }
    EXPECT_EQ(Shortcut::carbonModifiersOf(static_cast<ModifierFlags>(0x40000 | 0x10000 | 0x1)), 0x1000);
}

TEST(Shortcut, What_was_encoded_is_read_again)
{
    Shortcut const shortcut { 40, 6144 };
    EXPECT_EQ(shortcut.encoded(), u"{\"carbonKeyCode\":40,\"carbonModifiers\":6144}"_s);
    EXPECT_EQ(Shortcut::decode(shortcut.encoded()), shortcut);
}

TEST(Shortcut, Only_an_object_with_both_integers_is_a_shortcut)
{
    Shortcut const shortcut { 40, 6144 };
    for (auto const& [text, expected] : std::initializer_list<std::pair<char16_t const*, std::optional<Shortcut>>> {
             { u" { \"carbonModifiers\" : 6144, \"carbonKeyCode\" : 40, \"more\" : [] } ", shortcut },
             { u"{\"carbonKeyCode\":40.0,\"carbonModifiers\":6.144e3}", shortcut }, { u"", {} }, { u"true", {} },
             { u"[40,6144]", {} }, { u"{\"carbonKeyCode\":40}", {} }, { u"{\"carbonModifiers\":6144}", {} },
             { u"{\"carbonKeyCode\":\"40\",\"carbonModifiers\":6144}", {} },
             { u"{\"carbonKeyCode\":true,\"carbonModifiers\":6144}", {} },
             { u"{\"carbonKeyCode\":null,\"carbonModifiers\":6144}", {} },
             { u"{\"carbonKeyCode\":40.5,\"carbonModifiers\":6144}", {} },
             { u"{\"carbonKeyCode\":99999999999999999999,\"carbonModifiers\":6144}", {} },
             { u"{\"carbonKeyCode\":18446744073709551615,\"carbonModifiers\":6144}", {} },
             { u"{\"carbonKeyCode\":40,\"carbonModifiers\":6144", {} },
             { u"{\"carbonKeyCode\":40,\"carbonModifiers\":6144} x", {} } }) {
        SCOPED_TRACE(QString::fromUtf16(text).toStdString());
        EXPECT_EQ(Shortcut::decode(QString::fromUtf16(text)), expected);
    }
}

TEST(Shortcut, Shown_text_is_symbols_in_their_order_then_the_key_of_the_layout)
{
    FakeKeyboardLayout const layout({ { 0, u"a"_s }, { 27, u"ß"_s }, { 41, u"\u01c6"_s }, { 36, u"never shown"_s } });
    for (auto const& [shortcut, text] : std::initializer_list<std::pair<Shortcut, char const*>> {
             { { 36, 0x100 }, "⌘↩" }, { { 0, 0x1b00 }, "⌃⌥⇧⌘A" }, { { 27, 0 }, "Ss" }, { { 41, 0 }, "\u01c5" },
             { { 126, 0x20800 }, "⌥\U0001f310\ufe0e↑" }, { { 49, 0x1000 }, "⌃Space" }, { { 114, 0 }, "?\u20dd" },
             { { 91, 0 }, "8\u20e3" }, { { 92, 0 }, "9\u20e3" }, { { 90, 0 }, "F20" }, { { 71, 0 }, "☒\u20e3" },
             { { 8, 0x200 }, "⇧\ufffd" }, { { 65536, 0x200 }, "⇧\ufffd" } })
        EXPECT_EQ(shortcut.description(layout).toStdString(), text) << shortcut.carbonKeyCode;
}

TEST(Shortcut, It_is_taken_by_the_system_where_an_enabled_hot_key_is_the_very_same)
{
    using enum ModifierFlags;
    std::vector<SymbolicHotKey> const system { { 40, control, true }, { 38, control, false }, { 111, none, true },
        { 123, control | function, true }, { 2, function, true }, { 3, static_cast<ModifierFlags>(0x140000), true } };
    for (auto const& [shortcut, isTaken] : std::initializer_list<std::pair<Shortcut, bool>> { { { 40, 0x1000 }, true },
             { { 40, 0x1100 }, false }, { { 41, 0x1000 }, false }, { { 38, 0x1000 }, false }, { { 111, 0 }, false },
             { { 123, 0x1000 }, true }, { { 2, 0 }, false }, { { 2, 0x20000 }, true }, { { 3, 0x1100 }, true } })
        EXPECT_EQ(shortcut.isTakenBySystem(system), isTaken)
            << shortcut.carbonKeyCode << " " << shortcut.carbonModifiers;
}

TEST(MenuItem, The_first_item_depth_first_whose_key_and_modifiers_are_the_shortcuts_is_found)
{
    using enum ModifierFlags;
    FakeKeyboardLayout const layout({ { 3, u"f"_s }, { 40, u"k"_s } });
    std::vector<MenuItem> const menu { { u"No key"_s, {}, none, {} },
        { u"Edit"_s, {}, none, { { u"Find"_s, u"f"_s, command, {} }, { u"Find back"_s, u"F"_s, command, {} } } },
        { u"Find too"_s, u"f"_s, command, {} }, { u"Up"_s, u"\uf700"_s, option, {} },
        { u"Send"_s, u"\r"_s, command, {} } };
    for (auto const& [shortcut, title] : std::initializer_list<std::pair<Shortcut, QString>> {
             { { 3, 0x100 }, u"Find"_s }, { { 3, 0x300 }, u"Find back"_s }, { { 40, 0x100 }, {} },
             { { 126, 0x800 }, u"Up"_s }, { { 36, 0x100 }, u"Send"_s }, { { 36, 0 }, {} }, { { 9, 0 }, {} } }) {
        auto const* const item = MenuItem::takenBy(shortcut, menu, layout);
        EXPECT_EQ(item ? item->title : QString(), title);
    }
}

}
}
