#include "X11Desk.h"

#include "linux/x11/X11KeyStrokes.h"
#include "linux/x11/XcbXkb.h"
#include "linux/x11/XkbKeyboardLayout.h"

namespace Quillory {
namespace {

class KeyboardLayoutOnX11 : public X11Desk {
protected:
    ~KeyboardLayoutOnX11() override
    {
        switchTo(0);
        useMap();
    }

    void switchTo(std::uint8_t group)
    {
        xcb_xkb_latch_lock_state(xcb, XCB_XKB_ID_USE_CORE_KBD, 0, 0, true, group, 0, false, 0);
        XcbOwned<xcb_get_input_focus_reply_t>(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
    }

    static constexpr std::uint16_t keyA = 0, keyY = 16, keyMinus = 27, keyGrave = 50, escape = 53;
    XkbKeyboardLayout layout { *connection };
};

TEST_F(KeyboardLayoutOnX11, Keys_keep_their_places_and_give_what_the_layout_in_use_writes)
{
    struct Case {
        char const* layout;
        std::uint16_t key;
        char const* character; // none where null
    };
    for (auto const& [name, key, character] :
        std::initializer_list<Case> { { "us", keyA, "a" }, { "us", 40, "k" }, { "us", 23, "5" }, { "us", 22, "6" },
            { "us", 49, " " }, { "de", keyY, "z" }, { "de", keyMinus, "ß" }, { "de", keyGrave, "^" },
            { "ru", keyA, "ф" }, { "ru,us", keyA, "a" }, { "fr", escape, nullptr }, { "fr", 63, nullptr } }) {
        useMap({ QString::fromLatin1(name) });
        EXPECT_EQ(layout.character(key).value_or(QString()), QString::fromUtf8(character)) << name << ' ' << key;
    }
    // By name, of the key that gives it by itself.
    for (auto const& [name, key] : std::initializer_list<std::pair<char const*, std::optional<std::uint16_t>>> {
             { "a", 12 }, { "A", 12 }, { "Escape", escape }, { "Page_Up", 116 }, { "page_up", 116 }, { "Return", 36 },
             { "BackSpace", 51 }, { "F1", 122 }, { "F12", 111 }, { "Up", 126 }, { "Left", 123 }, { "KP_Up", 91 },
             { "KP_Enter", 76 }, { "Super_L", 55 }, { "no such key", std::nullopt }, { "1", std::nullopt } })
        EXPECT_EQ(layout.keyCode(QString::fromLatin1(name)), key) << name;
    EXPECT_EQ(layout.symbolName(12), u"a"_s);
    EXPECT_EQ(layout.symbolName(116), u"Prior"_s);
    EXPECT_EQ(layout.symbolName(63), std::nullopt);
}

TEST_F(KeyboardLayoutOnX11, A_key_event_tells_the_place_of_the_key_the_modifiers_and_whether_a_shortcut_can_have_them)
{
    using enum ModifierFlags;
    using enum KeyStroke::Kind;
    using enum KeyStroke::Phase;
    X11KeyStrokes strokes(*connection);
    constexpr std::uint16_t lock = 2, controlBit = 4, alt = 8, numLock = 16, super = 64, altGr = 128, group2 = 1 << 13;
    constexpr std::uint8_t a = 38, rightAlt = 108, leftSuper = 133, numLockKey = 77, capsLockKey = 66, keypad5 = 84,
                           play = 172;
    struct Case {
        char const* layout;
        std::uint8_t serverKey;
        std::uint16_t state;
        KeyStroke expected;
    };
    for (auto const& [name, serverKey, state, expected] : std::initializer_list<Case> {
             { "us", a, 0, { key, down, keyA, none } },
             { "us", a, controlBit | alt | lock | numLock, { key, down, keyA, control | option } },
             { "de", a, super | group2, { key, down, keyA, command } },
             { "de", a, altGr | controlBit, { key, down, keyA, std::nullopt } },
             { "ru", a, controlBit, { key, down, keyA, control } },
             { "us", rightAlt, 0, { modifier, down, std::uint16_t { 61 }, none } },
             { "de", rightAlt, 0, { modifier, down, std::uint16_t { 61 }, none } },
             { "us", leftSuper, 0, { modifier, down, std::uint16_t { 55 }, none } },
             { "us", numLockKey, 0, { modifier, down, std::uint16_t { 71 }, none } },
             { "us", capsLockKey, 0, { modifier, down, std::uint16_t { 57 }, none } },
             { "us", keypad5, numLock | controlBit, { key, down, std::uint16_t { 87 }, control } },
             { "us", play, controlBit, { key, down, std::nullopt, control } },
         }) {
        useMap({ QString::fromLatin1(name) });
        EXPECT_EQ(strokes.keyStroke(KeyStroke::Phase::down, serverKey, state), expected)
            << name << ' ' << serverKey << ' ' << state;
    }
}

TEST_F(KeyboardLayoutOnX11, A_switch_of_layouts_is_told_once_until_nobody_observes_and_counts_where_it_writes_ascii)
{
    useMap({ u"us,ru,fr"_s });
    int changes = 0;
    auto observation = layout.observeChanges([&] { ++changes; });
    EXPECT_EQ(layout.character(keyA), u"a"_s);
    loop.runUntil([&] { return changes > 0; }, 100ms);
    changes = 0;
    for (auto const& [group, character] : { std::pair { 2, u"q"_s }, { 1, u"a"_s } }) {
        switchTo(static_cast<std::uint8_t>(group));
        play(u"A"_s); // typing is no change
        EXPECT_TRUE(loop.runUntil([&] { return std::exchange(changes, 0) == 1; }));
        EXPECT_EQ(layout.character(keyA), character) << group;
    }
    observation.end();
    switchTo(2);
    EXPECT_TRUE(loop.runUntil([&] { return layout.character(keyA) == u"q"_s; }));
    EXPECT_EQ(changes, 0);
}

TEST(VirtualKeys, No_two_keys_share_a_place)
{
    int keys = 0;
    for (std::uint16_t code = 0; code < 256; ++code) {
        auto const place = VirtualKeys::serverKeyCode(code);
        keys += place.has_value();
        EXPECT_TRUE(!place || VirtualKeys::virtualKeyCode(*place) == code) << code;
    }
    EXPECT_GT(keys, 100);
}

}
}
