#include "linux/freedesktop/DesktopShortcutFormats.h"
#include "linux/freedesktop/DesktopSystemShortcuts.h"

#include "support/FakeKeyboardLayout.h"
#include "support/TemporaryFolder.h"
#include "support/Test.h"

#include <QProcess>

namespace Quillory {

void PrintTo(SymbolicHotKey const& hotKey, std::ostream* out)
{
    *out << hotKey.keyCode << " with " << std::hex << std::uint32_t(hotKey.modifiers) << std::dec;
}

namespace {

using namespace DesktopShortcutFormats;
using enum ModifierFlags;

SymbolicHotKey hotKey(std::int64_t keyCode, ModifierFlags modifiers)
{
    return { keyCode, modifiers, true };
}

// With a settings folder of the user's own.
class DesktopShortcutFormatsTest : public Test {
protected:
    DesktopShortcutFormatsTest()
    {
        qputenv("XDG_CONFIG_HOME", settings.at());
        qputenv("GSETTINGS_BACKEND", "keyfile"); // in that folder
    }
    ~DesktopShortcutFormatsTest() override
    {
        for (auto const* const name : { "XDG_CONFIG_HOME", "GSETTINGS_BACKEND", "XDG_CURRENT_DESKTOP" })
            qunsetenv(name);
    }

    std::vector<SymbolicHotKey> under(QByteArray const& desktop) const
    {
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        return DesktopSystemShortcuts(layout).symbolicHotKeys();
    }

    TemporaryFolder const settings;
    FakeKeyboardLayout const layout { { { 17, u"t"_s }, { 48, u"Tab"_s }, { 116, u"Page_Up"_s }, { 36, u"Return"_s },
        { 122, u"F1"_s }, { 24, u"U002b"_s }, { 43, u"U002c"_s } } };
};

TEST_F(DesktopShortcutFormatsTest, An_accelerator_is_known_modifiers_and_a_key_of_the_layout)
{
    struct Case {
        QString text;
        std::optional<SymbolicHotKey> expected;
    };
    for (auto const& [text, expected] :
        std::initializer_list<Case> { { u"<Control><Alt>t"_s, hotKey(17, control | option) },
            { u"<Primary><shift>Tab"_s, hotKey(48, control | shift) }, { u"<Super>Page_Up"_s, hotKey(116, command) },
            { u"F1"_s, hotKey(122, none) }, { u"<Hyper>t"_s, {} }, { u"<Super>"_s, {} }, { u""_s, {} },
            { u"disabled"_s, {} }, { u"<Super"_s, {} }, { u"<Alt>XF86Mail"_s, {} } })
        EXPECT_EQ(fromAccelerator(text, layout), expected) << text.toStdString();
}

TEST_F(DesktopShortcutFormatsTest, A_listing_of_settings_gives_what_is_in_use_and_half_a_file_nothing)
{
    EXPECT_THAT(fromSettingsListing(u"org.gnome.desktop.wm.keybindings switch-windows ['<Alt>Tab', '<Super>Tab']\n"
                                    "org.gnome.desktop.wm.keybindings close @as []\n"
                                    "org.gnome.settings-daemon.plugins.media-keys custom-keybindings ['/org/x/']\n"
                                    "'<Primary><Alt>t'\n"_s,
                    layout),
        ElementsAre(hotKey(48, option), hotKey(48, command), hotKey(17, control | option)));
    EXPECT_THAT(fromKeyboardChannel("<property name=\"F1\" type=\"string\"", layout), IsEmpty());
}

TEST_F(DesktopShortcutFormatsTest, The_settings_of_the_desktop_at_hand_are_read_and_no_others)
{
    auto const keys = u"org.gnome.desktop.wm.keybindings"_s;
    ASSERT_EQ(QProcess::execute(u"gsettings"_s, { u"set"_s, keys, u"close"_s, u"['<Super>F1']"_s }), 0);
    settings.write("kglobalshortcutsrc",
        "[kwin]\n"
        "_k_friendly_name=Tab,F1\n"
        "Walk=Alt+Tab\\tMeta+Tab,Alt+Shift+Tab,Walk Through Windows\n"
        "Off=none,F1,Was on once\n"
        "Up=Meta+PgUp,none,Up\n"
        "Zoom=Meta++,Meta+=,Zoom In\n"
        "Comma=Meta+\\,,none,Comma\n"
        "Mouse=Volume Up,Volume Up,Louder\n");
    settings.write("xfce4/xfconf/xfce-perchannel-xml/xfce4-keyboard-shortcuts.xml",
        "<?xml version=\"1.0\"?><channel name=\"xfce4-keyboard-shortcuts\">"
        "<property name=\"commands\" type=\"empty\"><property name=\"custom\" type=\"empty\">"
        "<property name=\"&lt;Control&gt;F1\" type=\"string\" value=\"menu\"/>"
        "<property name=\"&lt;Super&gt;t\" type=\"empty\"/>"
        "<property name=\"override\" type=\"bool\" value=\"true\"/>"
        "</property></property></channel>");
    EXPECT_THAT(under("ubuntu:GNOME"),
        AllOf(Contains(hotKey(122, command)), // what the user chose
            Contains(hotKey(48, option)), Not(Contains(hotKey(122, control)))));
    EXPECT_THAT(under("KDE"),
        ElementsAre(
            hotKey(48, option), hotKey(48, command), hotKey(116, command), hotKey(24, command), hotKey(43, command)));
    EXPECT_THAT(under("XFCE"), ElementsAre(hotKey(122, control)));
    EXPECT_THAT(under("i3"), IsEmpty());
}

}
}
