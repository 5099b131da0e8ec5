#include "KeyboardShortcuts/Shortcut.h"

#include <gmock/gmock.h>

namespace Quillory {
namespace {

TEST(Shortcut, Modifiers_turn_from_one_mask_into_the_other_and_foreign_bits_vanish)
{
    using enum ModifierFlags;
    struct Case {
        std::int64_t carbon;
        ModifierFlags flags;
        std::int64_t back;
    };
    for (auto const& [carbon, flags, back] :
        std::initializer_list<Case> { { 0, none, 0 }, { 0x1000, control, 0x1000 }, { 0x800, option, 0x800 },
            { 0x200, shift, 0x200 }, { 0x100, command, 0x100 }, { 0x20000, function, 0x20000 },
            { 6144, control | option, 6144 }, { 0x21b00, control | option | shift | command | function, 0x21b00 },
            { 0x400 | 0x100, command, 0x100 }, { 0x40000, none, 0 } }) {
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
    EXPECT_EQ(shortcut.encoded(), QStringLiteral("{\"carbonKeyCode\":40,\"carbonModifiers\":6144}"));
    EXPECT_EQ(Shortcut::decode(shortcut.encoded()), shortcut);
}

TEST(Shortcut, Only_an_object_with_both_integers_is_a_shortcut)
{
    struct Case {
        char16_t const* text;
        std::optional<Shortcut> expected;
    };
    Shortcut const shortcut { 40, 6144 };
    for (auto const& [text, expected] : std::initializer_list<Case> {
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

}
}
