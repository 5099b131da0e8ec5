#include "linux/freedesktop/DesktopShortcutFormats.h"
#include "linux/freedesktop/DesktopSystemShortcuts.h"

#include "support/FakeKeyboardLayout.h"
#include "support/Test.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

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

class DesktopShortcutFormatsTest : public Test {
protected:
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

TEST_F(DesktopShortcutFormatsTest, Each_desktops_settings_give_what_is_in_use)
{
    EXPECT_THAT(fromSettingsListing(u"org.gnome.desktop.wm.keybindings switch-windows ['<Alt>Tab', '<Super>Tab']\n"
                                    "org.gnome.desktop.wm.keybindings close @as []\n"
                                    "org.gnome.settings-daemon.plugins.media-keys custom-keybindings ['/org/x/']\n"
                                    "'<Primary><Alt>t'\n"_s,
                    layout),
        ElementsAre(hotKey(48, option), hotKey(48, command), hotKey(17, control | option)));

    EXPECT_THAT(fromGlobalShortcuts(u"[kwin]\n"
                                    "_k_friendly_name=Tab,F1\n"
                                    "Walk=Alt+Tab\\tMeta+Tab,Alt+Shift+Tab,Walk Through Windows\n"
                                    "Off=none,F1,Was on once\n"
                                    "Up=Meta+PgUp,none,Up\n"
                                    "Zoom=Meta++,Meta+=,Zoom In\n"
                                    "Comma=Meta+\\,,none,Comma\n"
                                    "Mouse=Volume Up,Volume Up,Louder\n"_s,
                    layout),
        ElementsAre(
            hotKey(48, option), hotKey(48, command), hotKey(116, command), hotKey(24, command), hotKey(43, command)));

    EXPECT_THAT(
        fromKeyboardChannel("<?xml version=\"1.0\"?><channel name=\"xfce4-keyboard-shortcuts\">"
                            "<property name=\"commands\" type=\"empty\"><property name=\"custom\" type=\"empty\">"
                            "<property name=\"&lt;Alt&gt;F1\" type=\"string\" value=\"menu\"/>"
                            "<property name=\"&lt;Super&gt;t\" type=\"empty\"/>"
                            "<property name=\"override\" type=\"bool\" value=\"true\"/>"
                            "</property></property></channel>",
            layout),
        ElementsAre(hotKey(122, option)));
    EXPECT_THAT(fromKeyboardChannel("<property name=\"F1\" type=\"string\"", layout), IsEmpty());
}

// The user's own settings folder, with settings in it.
class DesktopSystemShortcutsTest : public DesktopShortcutFormatsTest {
protected:
    DesktopSystemShortcutsTest()
    {
        qputenv("XDG_CONFIG_HOME", m_settings.path().toUtf8());
        qputenv("GSETTINGS_BACKEND", "keyfile"); // in that folder
    }
    ~DesktopSystemShortcutsTest() override
    {
        for (auto const* const name : { "XDG_CONFIG_HOME", "GSETTINGS_BACKEND", "XDG_CURRENT_DESKTOP" })
            qunsetenv(name);
    }

    void write(QString const& name, QByteArray const& text) const
    {
        auto const path = m_settings.filePath(name);
        QFile file(path);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    std::vector<SymbolicHotKey> under(QByteArray const& desktop) const
    {
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        return DesktopSystemShortcuts(layout).symbolicHotKeys();
    }

private:
    QTemporaryDir m_settings;
};

TEST_F(DesktopSystemShortcutsTest, The_settings_of_the_desktop_at_hand_are_read_and_no_others)
{
    auto const keys = u"org.gnome.desktop.wm.keybindings"_s;
    ASSERT_EQ(QProcess::execute(u"gsettings"_s, { u"set"_s, keys, u"close"_s, u"['<Super>F1']"_s }), 0);
    write(u"kglobalshortcutsrc"_s, "[kwin]\nUp=Meta+PgUp,none,Up\n");
    write(u"xfce4/xfconf/xfce-perchannel-xml/xfce4-keyboard-shortcuts.xml"_s,
        R"(<channel><property name="commands" type="empty"><property name="custom" type="empty">)"
        R"(<property name="&lt;Control&gt;F1" type="string" value="menu"/></property></property></channel>)");
    EXPECT_THAT(under("ubuntu:GNOME"),
        AllOf(Contains(hotKey(122, command)), // what the user chose
            Contains(hotKey(48, option)), Not(Contains(hotKey(122, control)))));
    EXPECT_THAT(under("KDE"), ElementsAre(hotKey(116, command)));
    EXPECT_THAT(under("XFCE"), ElementsAre(hotKey(122, control)));
    EXPECT_THAT(under("i3"), IsEmpty());
}

}
}
