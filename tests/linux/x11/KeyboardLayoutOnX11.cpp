#include "linux/x11/XkbKeyboardLayout.h"

#include "linux/x11/XcbXkb.h"
#include "support/EventLoop.h"
#include "support/Test.h"

#include <QProcess>

namespace Quillory {
namespace {

class KeyboardLayoutOnX11 : public Test {
protected:
    static constexpr std::uint16_t keyA = 0, keyQ = 12, keyY = 16, keyMinus = 27, keyGrave = 50, escape = 53;
    static constexpr std::uint16_t functionKey = 63;

    ~KeyboardLayoutOnX11() override
    {
        switchTo(0);
        choose(u"us"_s);
    }

    static void choose(QString const& name) { EXPECT_EQ(QProcess::execute(u"setxkbmap"_s, { name }), 0); }
    void switchTo(std::uint8_t group)
    {
        auto* const xcb = m_connection->handle();
        xcb_xkb_latch_lock_state(xcb, XCB_XKB_ID_USE_CORE_KBD, 0, 0, true, group, 0, false, 0);
        XcbOwned<xcb_get_input_focus_reply_t>(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
    }

    EventLoop loop;

private:
    std::unique_ptr<X11Connection> m_connection = std::move(X11Connection::open().value());

protected:
    XkbKeyboardLayout layout { *m_connection };
};

TEST_F(KeyboardLayoutOnX11, Keys_give_what_the_layout_in_use_writes)
{
    struct Case {
        char const* layout;
        std::uint16_t key;
        char const* character; // none where null
    };
    for (auto const& [name, key, character] : std::initializer_list<Case> { { "us", keyA, "a" }, { "us", keyY, "y" },
             { "de", keyY, "z" }, { "de", keyMinus, "ß" }, { "de", keyGrave, "^" }, { "fr", keyA, "q" },
             { "ru", keyA, "ф" }, { "ru,us", keyA, "a" }, { "fr", escape, nullptr }, { "fr", functionKey, nullptr } }) {
        SCOPED_TRACE(Message() << name << " " << key);
        choose(QString::fromUtf8(name));
        auto const given = layout.character(key);
        EXPECT_EQ(given.value_or(QString()), QString::fromUtf8(character));
    }
}

TEST_F(KeyboardLayoutOnX11, The_layout_that_is_switched_to_counts_as_long_as_it_writes_ascii)
{
    choose(u"us,ru,fr"_s);
    for (auto const& [group, character] : { std::pair { 0, u"a"_s }, { 1, u"a"_s }, { 2, u"q"_s }, { 0, u"a"_s } }) {
        switchTo(static_cast<std::uint8_t>(group));
        EXPECT_EQ(layout.character(keyA), character) << group;
    }
}

TEST_F(KeyboardLayoutOnX11, Symbols_are_found_on_the_key_that_gives_them_by_itself)
{
    choose(u"fr"_s);
    for (auto const& [name, key] : std::initializer_list<std::pair<QString, std::optional<std::uint16_t>>> {
             { u"a"_s, keyQ }, { u"A"_s, keyQ }, { u"Escape"_s, escape }, { u"Page_Up"_s, 116 }, { u"page_up"_s, 116 },
             { u"no such key"_s, std::nullopt }, { u"1"_s, std::nullopt } })
        EXPECT_EQ(layout.keyCode(name), key) << name.toStdString();
}

TEST_F(KeyboardLayoutOnX11, A_change_is_told_once_until_nobody_observes_and_typing_is_none)
{
    choose(u"us,de"_s);
    int changes = 0;
    auto observation = layout.observeChanges([&] { ++changes; });
    EXPECT_EQ(layout.character(keyY), u"y"_s);
    loop.runUntil([&] { return changes > 0; }, 100ms);
    changes = 0;
    switchTo(1);
    EXPECT_TRUE(loop.runUntil([&] { return changes == 1; }));
    EXPECT_EQ(layout.character(keyY), u"z"_s);
    observation.end();
    choose(u"us"_s);
    EXPECT_TRUE(loop.runUntil([&] { return layout.character(keyY) == u"y"_s; }));
    EXPECT_EQ(changes, 1);
}

}
}
